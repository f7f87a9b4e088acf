// SPDX-License-Identifier: Apache-2.0
// Collects the assertions that fail while it lives, through the host's sink. One at a time.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "core/Assert.h"

class AssertionList {
 public:
  AssertionList() : m_previous(LKSetAssertSink([this](const LKAssertion& assertion) { Add(assertion); })) {}
  ~AssertionList() { LKSetAssertSink(m_previous); }
  AssertionList(const AssertionList&) = delete;
  AssertionList& operator=(const AssertionList&) = delete;

  std::vector<LKAssertion> All() const {
    const std::lock_guard lock(m_mutex);
    return m_assertions;
  }
  std::vector<std::string> Messages() const {
    std::vector<std::string> messages;
    for (const LKAssertion& assertion : All()) messages.push_back(assertion.m_szMessage.ToChar());
    return messages;
  }

 private:
  void Add(const LKAssertion& assertion) {
    const std::lock_guard lock(m_mutex);
    m_assertions.push_back(assertion);
  }

  mutable std::mutex m_mutex;
  std::vector<LKAssertion> m_assertions;
  LKAssertSink m_previous;
};
