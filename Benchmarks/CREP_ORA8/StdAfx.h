// SPDX-License-Identifier: Apache-2.0
// The precompiled header of the plug-in; every source file includes it first. It gives each source file two
// statics of its own, made when the library is loaded and destroyed when it is unloaded, before the file's
// class information is registered: BLANK_TRKGUID and m_GlobalVars.
//
// Assertions report through the host's wxWidgets handler and execution continues; a run-time check follows
// where one is needed. A numbered assertion carries the source, line and function that support looks up: the
// numbers are written at the call and stay as they are when code moves.
#pragma once

#include <oci.h>
#include <wx/debug.h>
#include <wx/log.h>
#include <wx/object.h>

#include <string>

#include "core/LKString.h"
#include "core/LKTypes.h"
#include "core/TRKGUID.h"
#include "core/TRKMap.h"

static CBlankTRKGUID BLANK_TRKGUID;
static CTRKMapStringToString m_GlobalVars;

// The source file as assertions and debug lines name it, from its bare name.
#define REP_SOURCE(name) "Benchmarks/CREP_ORA8/" name ".cpp"

// Reports `text` when `condition` is false, as from the source, line and function given.
#define REP_ASSERT_IN(condition, text, source, line, function)                                           \
  do {                                                                                                   \
    if (wxTheAssertHandler != nullptr && !(condition)) wxOnAssert((source), (line), (function), (text)); \
  } while (false)

// A numbered assertion: REP_ASSERT_AT(n > 0, "n > 0", "Xact_Insert", 62, "PreBenchmark").
#define REP_ASSERT_AT(condition, text, name, line, function) \
  REP_ASSERT_IN(condition, text, REP_SOURCE(name), line, function)

// An assertion without a number of its own: as from the place where it stands.
#define REP_ASSERT(condition, text) REP_ASSERT_IN(condition, text, __FILE__, __LINE__, __func__)

// A debug line as from the source, line and function given: a wide format and its arguments, rendered only
// when the calling thread logs at debug level.
#define REP_DEBUG_AT(name, line, function, ...)                                                      \
  do {                                                                                               \
    if (wxLog::IsLevelEnabled(wxLOG_Debug, wxASCII_STR(wxLOG_COMPONENT)))                            \
      wxLogger(wxLOG_Debug, REP_SOURCE(name), (line), (function), wxLOG_COMPONENT).Log(__VA_ARGS__); \
  } while (false)
