// SPDX-License-Identifier: Apache-2.0
#include "core/LKConfig.h"

#include <wx/fileconf.h>
#include <wx/log.h>
#include <wx/sstream.h>
#include <wx/wfstream.h>

namespace {

// Values are taken as they are written: a $NAME is no environment variable.
std::unique_ptr<wxFileConfig> ConfigFrom(wxInputStream& stream) {
  auto pConfig = std::make_unique<wxFileConfig>(stream, wxConvUTF8);
  pConfig->SetExpandEnvVars(false);
  return pConfig;
}

std::unique_ptr<wxFileConfig> EmptyConfig() {
  wxStringInputStream nothing{wxString()};
  return ConfigFrom(nothing);
}

wxString KeyPath(const wchar_t* szSection, const wchar_t* szKey) {
  return wxString("/") + szSection + "/" + szKey;
}

}  // namespace

CLKConfig::CLKConfig() : m_pConfig(EmptyConfig()) {}

CLKConfig::~CLKConfig() = default;

int CLKConfig::LoadFile(const wchar_t* szPath) {
  const wxLogNull quiet;  // the result says it
  wxFFileInputStream file{wxString(szPath)};
  if (!file.IsOk()) return 0;
  auto pLoaded = ConfigFrom(file);
  const std::lock_guard lock(m_Mutex);
  m_pConfig = std::move(pLoaded);
  return 1;
}

long CLKConfig::GetProfileInt(const wchar_t* szSection, const wchar_t* szKey, long nDefault) {
  const std::lock_guard lock(m_Mutex);
  return m_pConfig->ReadLong(KeyPath(szSection, szKey), nDefault);
}

LKString CLKConfig::GetProfileString(const wchar_t* szSection, const wchar_t* szKey,
                                     const wchar_t* szDefault) {
  const std::lock_guard lock(m_Mutex);
  return m_pConfig->Read(KeyPath(szSection, szKey), wxString(szDefault)).wc_str();
}

void CLKConfig::WriteProfileInt(const wchar_t* szSection, const wchar_t* szKey, long nValue) {
  const std::lock_guard lock(m_Mutex);
  m_pConfig->Write(KeyPath(szSection, szKey), nValue);
}

void CLKConfig::WriteProfileString(const wchar_t* szSection, const wchar_t* szKey, const wchar_t* szValue) {
  const std::lock_guard lock(m_Mutex);
  m_pConfig->Write(KeyPath(szSection, szKey), wxString(szValue));
}

CLKConfig* LKGetConfig() {
  static CLKConfig config;
  return &config;
}
