// SPDX-License-Identifier: Apache-2.0
// The host's answer to a failed wxWidgets assertion: it is reported to a sink and execution continues. In
// force from the moment libLKCore is loaded. Any thread may report or change the sink; reports come one at a
// time.
#pragma once

#include <functional>

#include "core/LKString.h"

struct LKAssertion {
  LKString m_szFile;
  int m_nLine = 0;
  LKString m_szFunction;
  LKString m_szCondition;
  LKString m_szMessage;  // may be empty
};

using LKAssertSink = std::function<void(const LKAssertion&)>;

// Returns the sink that was there. An empty sink is the default one: a line on the standard error output. A
// sink must not call this function; an assertion that fails within a sink goes to the default one.
LKAssertSink LKSetAssertSink(LKAssertSink sink);

// "file:line: function: assertion failed: condition (message)", without a line end.
LKString LKAssertionText(const LKAssertion& assertion);
