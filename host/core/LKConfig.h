// SPDX-License-Identifier: Apache-2.0
// CLKConfig is the host's configuration: sections of keys in an INI file. One object per process, from
// LKGetConfig(); any thread may read or write it.
#pragma once

#include <memory>
#include <mutex>

#include "core/LKString.h"

class wxFileConfig;

class CLKConfig {
 public:
  CLKConfig();  // empty: every read gives the default
  ~CLKConfig();
  CLKConfig(const CLKConfig&) = delete;
  CLKConfig& operator=(const CLKConfig&) = delete;

  // Replaces the content by that of the INI file. 0 when the file cannot be read; the content stays as it
  // was.
  int LoadFile(const wchar_t* szPath);

  // The stored integer, or nDefault when the key is missing or holds no integer.
  long GetProfileInt(const wchar_t* szSection, const wchar_t* szKey, long nDefault);
  LKString GetProfileString(const wchar_t* szSection, const wchar_t* szKey, const wchar_t* szDefault);
  void WriteProfileInt(const wchar_t* szSection, const wchar_t* szKey, long nValue);  // in memory only
  void WriteProfileString(const wchar_t* szSection, const wchar_t* szKey, const wchar_t* szValue);

 private:
  std::mutex m_Mutex;
  std::unique_ptr<wxFileConfig> m_pConfig;
};

CLKConfig* LKGetConfig();
