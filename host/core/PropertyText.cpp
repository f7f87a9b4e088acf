// SPDX-License-Identifier: Apache-2.0
#include "core/PropertyText.h"

#include <wx/log.h>
#include <wx/sstream.h>
#include <wx/xml/xml.h>

#include <array>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>
#include <string>

#include "core/LKTypes.h"

namespace {

using JsonValue = nlohmann::ordered_json;

constexpr char kRoot[] = "properties";
constexpr char kElement[] = "property";
constexpr char kName[] = "name";

LKString FromUtf8(const std::string& text) { return {text.data(), static_cast<int>(text.size())}; }

JsonValue JsonOf(const LKProperty& property) {
  if (property.bQuoted) return property.szValue.ToChar();
  return JsonValue::parse(property.szValue.ToChar());
}

LKString WriteJson(const LKPropertyList& list) {
  JsonValue object = JsonValue::object();
  for (const LKProperty& property : list) object[property.szName.ToChar()] = JsonOf(property);
  return FromUtf8(object.dump(2));
}

bool ReadJson(const LKString& szText, LKPropertyList& list) {
  const JsonValue object = JsonValue::parse(szText.ToChar(), nullptr, false);
  if (!object.is_object()) return false;
  for (const auto& [name, value] : object.items()) {
    if (!value.is_string() && !value.is_number()) return false;
    const std::string text = value.is_string() ? value.get<std::string>() : value.dump();
    list.push_back({FromUtf8(name), FromUtf8(text), value.is_string()});
  }
  return true;
}

LKString WriteXml(const LKPropertyList& list) {
  auto* pRoot = new wxXmlNode(wxXML_ELEMENT_NODE, kRoot);  // the document owns its nodes
  wxXmlDocument document;
  document.SetRoot(pRoot);
  for (const LKProperty& property : list) {
    auto* pElement = new wxXmlNode(wxXML_ELEMENT_NODE, kElement);
    pElement->AddAttribute(kName, property.szName.c_str());
    pElement->AddChild(new wxXmlNode(wxXML_TEXT_NODE, "", property.szValue.c_str()));
    pRoot->AddChild(pElement);
  }
  wxStringOutputStream stream;
  document.Save(stream, wxXML_NO_INDENTATION);
  return stream.GetString().wc_str();
}

bool ReadXml(const LKString& szText, LKPropertyList& list) {
  const wxLogNull quiet;  // the result says it
  wxStringInputStream stream{wxString(szText.c_str())};
  wxXmlDocument document;
  if (!document.Load(stream, "UTF-8", wxXMLDOC_KEEP_WHITESPACE_NODES) ||
      document.GetRoot()->GetName() != kRoot)
    return false;
  for (const wxXmlNode* pNode = document.GetRoot()->GetChildren(); pNode; pNode = pNode->GetNext()) {
    if (pNode->GetType() != wxXML_ELEMENT_NODE) continue;
    wxString name;
    if (pNode->GetName() != kElement || !pNode->GetAttribute(kName, &name)) return false;
    list.push_back({name.wc_str(), pNode->GetNodeContent().wc_str(), true});
  }
  return true;
}

template <class Number>
bool ParseNumber(const LKString& szValue, Number& value) {
  const std::string text = szValue.ToChar();
  const auto [pEnd, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && pEnd == text.data() + text.size();
}

template <class Number>
bool Store(const LKString& szValue, void* pField) {
  Number value{};
  if (!ParseNumber(szValue, value)) return false;
  if (pField) *static_cast<Number*>(pField) = value;
  return true;
}

// A null field: only the check.
bool StoreInto(enumRestPropertyType eType, const LKString& szValue, void* pField) {
  switch (eType) {
    case REST_INT:
      return Store<int>(szValue, pField);
    case REST_INT64:
      return Store<__int64>(szValue, pField);
    case REST_DOUBLE:
      return Store<double>(szValue, pField);
    case REST_STRING:
      if (pField) *static_cast<LKString*>(pField) = szValue;
      return true;
  }
  return false;
}

template <class Number>
LKProperty NumberProperty(const REST_PROPERTY_ENTRY& entry) {
  std::array<char, 32> text{};
  const Number value = *static_cast<const Number*>(entry.pValue);
  const auto [pEnd, error] = std::to_chars(text.data(), text.data() + text.size(), value);
  // JSON has no infinity and no not-a-number: these go in quotes
  return {entry.szName, FromUtf8({text.data(), pEnd}), !std::isfinite(static_cast<double>(value))};
}

}  // namespace

LKString LKWriteProperties(const LKPropertyList& list, SerializeMode eMode) {
  return eMode == Xml ? WriteXml(list) : WriteJson(list);
}

bool LKReadProperties(const LKString& szText, SerializeMode eMode, LKPropertyList& list) {
  LKPropertyList read;
  if (!(eMode == Xml ? ReadXml(szText, read) : ReadJson(szText, read))) return false;
  list = std::move(read);
  return true;
}

LKProperty LKPropertyOf(const REST_PROPERTY_ENTRY& entry) {
  switch (entry.nType) {
    case REST_INT:
      return NumberProperty<int>(entry);
    case REST_INT64:
      return NumberProperty<__int64>(entry);
    case REST_DOUBLE:
      return NumberProperty<double>(entry);
    case REST_STRING:
      break;
  }
  return {entry.szName, *static_cast<const LKString*>(entry.pValue), true};
}

bool LKIsValueOf(const REST_PROPERTY_ENTRY& entry, const LKString& szValue) {
  return StoreInto(entry.nType, szValue, nullptr);
}

bool LKStoreValue(const REST_PROPERTY_ENTRY& entry, const LKString& szValue) {
  return StoreInto(entry.nType, szValue, entry.pValue);
}
