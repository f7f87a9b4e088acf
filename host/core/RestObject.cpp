// SPDX-License-Identifier: Apache-2.0
#include "core/RestObject.h"

#include <algorithm>
#include <string>

#include "core/PropertyText.h"

namespace {

constexpr int kOk = 200;
constexpr int kBadRequest = 400;
constexpr int kNotFound = 404;
constexpr int kMethodNotAllowed = 405;

// Takes the first segment off a path: "a/b" becomes "b" and gives "a". Empty segments do not count.
LKString TakeSegment(LKString& szPath) {
  const std::wstring path = szPath.c_str();
  const size_t nFirst = std::min(path.find_first_not_of(L'/'), path.size());
  const size_t nEnd = std::min(path.find(L'/', nFirst), path.size());
  szPath = path.substr(nEnd).c_str();
  return path.substr(nFirst, nEnd - nFirst).c_str();
}

const REST_PROPERTY_ENTRY* Find(const std::vector<REST_PROPERTY_ENTRY>& table, const LKString& szName) {
  const auto found =
      std::ranges::find_if(table, [&szName](const auto& entry) { return entry.szName == szName; });
  return found == table.end() ? nullptr : &*found;
}

// What is wrong with a change; empty when it may be made.
LKString Objection(const REST_PROPERTY_ENTRY* pEntry, const LKProperty& change) {
  LKString szText;
  if (!pEntry)
    szText.Format(L"There is no property \"%s\".", change.szName);
  else if (pEntry->bReadOnly)
    szText.Format(L"The property \"%s\" is read-only.", change.szName);
  else if (!LKIsValueOf(*pEntry, change.szValue))
    szText.Format(L"\"%s\" is no value of the property \"%s\".", change.szValue, change.szName);
  return szText;
}

}  // namespace

void CRestObject::GetPropertyTable(std::vector<REST_PROPERTY_ENTRY>&) {}

CRestObject::~CRestObject() = default;

int CRestObject::ProcessRequest(Context context, LKString& szResponse) {
  const LKString szChild = TakeSegment(context.szRestURI);
  if (!szChild.IsEmpty()) {
    CRestObject* pChild = GetNextObject(szChild);
    return pChild ? pChild->ProcessRequest(context, szResponse) : kNotFound;
  }
  switch (context.nMethod) {
    case REST_GET:
      return DoGet(context, szResponse);
    case REST_PUT:
      return DoPut(context, szResponse);
    case REST_POST:
      return DoPost(context, szResponse);
    case REST_DELETE:
      return DoDelete(context, szResponse);
    default:
      return kMethodNotAllowed;
  }
}

CRestObject* CRestObject::GetNextObject(LKString) { return nullptr; }

int CRestObject::DoGet(Context context, LKString& szResponse) {
  std::vector<REST_PROPERTY_ENTRY> table;
  GetPropertyTable(table);
  LKPropertyList list;
  std::ranges::transform(table, std::back_inserter(list), LKPropertyOf);
  szResponse = LKWriteProperties(list, context.nAcceptType);
  return kOk;
}

int CRestObject::DoPut(Context context, LKString& szResponse) {
  LKPropertyList changes;
  if (!LKReadProperties(context.szRequestData, context.nContextType, changes)) {
    szResponse = L"The request is not a list of named values.";
    return kBadRequest;
  }
  std::vector<REST_PROPERTY_ENTRY> table;
  GetPropertyTable(table);
  for (const LKProperty& change : changes) {
    szResponse = Objection(Find(table, change.szName), change);
    if (!szResponse.IsEmpty()) return kBadRequest;
  }
  for (const LKProperty& change : changes) LKStoreValue(*Find(table, change.szName), change.szValue);
  return kOk;
}

int CRestObject::DoPost(Context, LKString&) { return kMethodNotAllowed; }

int CRestObject::DoDelete(Context, LKString&) { return kMethodNotAllowed; }

int CRestObject::IsValid() { return 1; }

int CRestObject::Apply() { return 1; }
