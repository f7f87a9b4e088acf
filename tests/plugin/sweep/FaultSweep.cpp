// SPDX-License-Identifier: Apache-2.0
#include "FaultSweep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <utility>

#include "CallSite.h"

namespace sweep {

using scripted::Fault;
using scripted::Oci;

namespace {

struct NamedFault {
  Kind kind;
  const char* name;
  Fault fault;
};

const std::vector<NamedFault>& Faults() {
  static const std::vector<NamedFault> faults = {
      {kError, "an error", {OCI_ERROR, 600, "swept"}},
      {kBare, "an error without a record", {OCI_ERROR}},
      {kInfo, "success with information", {OCI_SUCCESS_WITH_INFO, 24344, "swept", true}},
      {kNoData, "no data", {OCI_NO_DATA, 1403, "swept"}},
      {kInvalid, "an invalid handle", {OCI_INVALID_HANDLE}},
      {kMissing, "a missing table", {OCI_ERROR, 942, "swept"}},
      {kLowBits, "a status with low bits of zero", {scripted::kLowBitsZero, 0, "", true}}};
  return faults;
}

constexpr std::array kExpectedByDrops = {942, 4043, 2289};

// The run without a fault: the calls before the operation and its own.
struct DryRun {
  std::vector<CallSite> sites;
  size_t first = 0;  // the operation's first one

  std::vector<size_t> Countable() const {  // the places of those that may fail
    std::vector<size_t> places;
    for (size_t i = first; i < sites.size(); ++i)
      if (sites[i].call != "OCIErrorGet") places.push_back(i);
    return places;
  }
};

std::unique_ptr<Subject> MakeSubject(const Operation& operation) {
  Oci().Reset();
  return operation.make();
}

std::string Numbered(const std::string& begin, const std::string& number) {
  const size_t at = begin.find("%N");
  return at == std::string::npos ? begin : begin.substr(0, at) + number + begin.substr(at + 2);
}

// A call without an error handle leaves no record (the number is empty): what is reported then is what the
// handle held before.
bool FitsReport(const std::string& report, const std::string& begin, const std::string& number) {
  constexpr size_t kLevel = sizeof "ERROR " - 1;
  const std::string any = report.substr(kLevel, report.find(':') - kLevel);
  return report.starts_with(Numbered(begin, number.empty() ? any : number));
}

class Reports {
 public:
  explicit Reports(const Subject& subject) {
    const auto errors = subject.m_reports.Errors();
    const auto texts = subject.m_reports.Reports();
    for (size_t i = 0; i < errors.size(); ++i)
      if (errors[i].m_eErrorLevel > INFO_LEVEL) m_texts.push_back(texts[i]);
  }
  void ExpectAsSaid(const Effect& effect, const std::string& number) const {
    const bool fits = std::ranges::equal(m_texts, effect.reports, [&](const auto& text, const auto& begin) {
      return FitsReport(text, begin, number);
    });
    EXPECT_TRUE(fits) << "reported:" << Joined(m_texts) << "\nthe rule says:" << Joined(effect.reports);
  }

 private:
  static std::string Joined(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts) joined += "\n  " + text;
    return joined.empty() ? " nothing" : joined;
  }

  std::vector<std::string> m_texts;
};

// The host may have numbers of its own on the list: they must still be there afterwards, once.
void IgnoreOfTheHost(Subject& subject) {
  for (const int nCode : kExpectedByDrops) subject.m_driver.AddIgnoreError(nCode);
}

void ExpectIgnoredOnceMore(Subject& subject) {
  for (const int nCode : kExpectedByDrops) {
    EXPECT_TRUE(subject.m_driver.IsIgnoredError(nCode)) << nCode << " was removed from the host's list";
    subject.m_driver.RemoveIgnoreError(nCode);
  }
}

void ExpectNothingIgnored(const Subject& subject) {
  for (const int nCode : kExpectedByDrops)
    EXPECT_FALSE(subject.m_driver.IsIgnoredError(nCode)) << nCode << " stayed on the list";
}

void ExpectOrder(const Subject& subject) {
  EXPECT_EQ(Oci().Violations(), std::vector<std::string>{});
  EXPECT_EQ(subject.m_asserts.Texts(), std::vector<std::string>{});
}

DryRun RunWithoutFault(const Operation& operation) {
  const auto subject = MakeSubject(operation);
  const int before = Oci().Live();
  subject->Prepare();
  DryRun run;
  run.first = Oci().Calls().size();
  const int result = subject->Run();
  run.sites = CallSites(Oci().Calls());
  EXPECT_EQ(result, operation.success.result);
  EXPECT_EQ(Oci().Live() - before, operation.success.owned + operation.success.leaked);
  Reports(*subject).ExpectAsSaid(operation.success, "-1");
  subject->Check(result);
  ExpectNothingIgnored(*subject);
  ExpectOrder(*subject);
  subject->Finish();
  EXPECT_EQ(Oci().Live() - before, operation.success.leaked);
  return run;
}

void ExpectSecondRun(const Operation& operation, Subject& subject) {
  subject.Rewind();
  subject.m_reports.Clear();
  EXPECT_EQ(subject.Run(), operation.success.result) << "in the second run";
  Reports(subject).ExpectAsSaid(operation.success, "-1");
  subject.Finish();
}

// One operation with one call that fails in one way.
class Strike {
 public:
  Strike(const Operation& operation, const CallSite& site, const NamedFault& fault)
      : m_operation(operation), m_site(site), m_fault(fault) {
    const bool allocates = site.call == "OCIHandleAlloc" || site.call == "OCIEnvNlsCreate";
    if (allocates && fault.kind == kInfo) m_fault.fault.works = false;  // no client makes one and warns
  }

  void Run(int nth) {
    const Effect* effect = FindEffect();
    if (effect == nullptr) return;
    const auto subject = MakeSubject(m_operation);
    m_before = Oci().Live();
    subject->Prepare();
    Oci().FailAnyCall(nth, m_fault.fault);
    if (m_fault.kind != kMissing) IgnoreOfTheHost(*subject);
    const int result = subject->Run();
    ExpectStruck();
    if (m_fault.kind != kMissing) ExpectIgnoredOnceMore(*subject);
    EXPECT_EQ(result, effect->result);
    EXPECT_EQ(Handles(), effect->owned + effect->leaked);
    Reports(*subject).ExpectAsSaid(*effect, Number());
    subject->Check(result);
    ExpectNothingIgnored(*subject);
    ExpectHandlesAfterSecondRun(*subject, *effect);
    ExpectOrder(*subject);
  }

 private:
  const Effect* FindEffect() const {
    for (const Rule& rule : m_operation.rules)
      if (rule.call == m_site.call && m_site.text.starts_with(rule.text) && (rule.kinds & m_fault.kind) != 0)
        return rule.effect ? &*rule.effect : &m_operation.success;
    if (m_fault.kind == kLowBits) return &m_operation.success;
    ADD_FAILURE()
        << "No rule says what happens when this call fails. State it in the rules of the operation.";
    return nullptr;
  }

  void ExpectStruck() const {
    EXPECT_EQ(Oci().Struck().size(), 1u);
    if (Oci().Struck().empty()) return;
    EXPECT_EQ(CallSites(Oci().Calls())[Oci().Struck().front()].call, m_site.call)
        << "the operation does not make the same calls each time";
  }

  // Those alive beyond the ones before, but for one whose free failed: that one is not the product's to give
  // back again. It goes with its environment.
  int Handles() const {
    const bool kept = m_site.call == "OCIHandleFree" && !m_fault.fault.works && Oci().Live(OCI_HTYPE_ENV) > 0;
    return Oci().Live() - m_before - (kept ? 1 : 0);
  }

  std::string Number() const {
    if (m_site.call == "OCIHandleAlloc") return "";
    return m_fault.fault.code == 0 ? "-1" : std::to_string(m_fault.fault.code);
  }

  void ExpectHandlesAfterSecondRun(Subject& subject, const Effect& effect) {
    ExpectSecondRun(m_operation, subject);
    EXPECT_EQ(Handles(), effect.leaked + m_operation.success.leaked) << "after the second run";
  }

  const Operation& m_operation;
  const CallSite& m_site;
  NamedFault m_fault;
  int m_before = 0;
};

void LoseDatabaseFrom(const Operation& operation, int nth, const Fault& fault) {
  const auto subject = MakeSubject(operation);
  subject->Prepare();
  Oci().FailFrom(nth, fault);
  subject->Run();
  ExpectNothingIgnored(*subject);
  Oci().ClearFaults();
  ExpectSecondRun(operation, *subject);
  ExpectOrder(*subject);
}

}  // namespace

Rules operator+(Rules left, const Rules& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

Subject::Subject() { m_driver.AddHandler(&m_reports); }

void Subject::Connect() { EXPECT_EQ(m_driver.Connect(L"scripted", L"user", L"password"), 1); }

void Subject::Rewind() {
  Finish();
  Prepare();
}

void SweepEachCall(const Operation& operation) {
  const DryRun dry = RunWithoutFault(operation);
  int nth = 0;
  int strikes = 0;
  for (const size_t place : dry.Countable()) {
    ++nth;
    for (const NamedFault& fault : Faults()) {
      SCOPED_TRACE(operation.name + ", call " + std::to_string(nth) + " with " + fault.name + ": " +
                   dry.sites[place].whole + " for \"" + dry.sites[place].text + "\"");
      Strike(operation, dry.sites[place], fault).Run(nth);
      ++strikes;
    }
  }
  std::cout << operation.name << ": " << nth << " calls, " << strikes << " faults\n";
}

void SweepLostDatabase(const Operation& operation) {
  const int calls = static_cast<int>(RunWithoutFault(operation).Countable().size());
  for (int nth = 1; nth <= calls; ++nth)
    for (const Fault& fault : {scripted::OraFault(3113), Fault{OCI_INVALID_HANDLE}}) {
      SCOPED_TRACE(operation.name + ", lost from call " + std::to_string(nth) + " on with status " +
                   std::to_string(fault.status));
      LoseDatabaseFrom(operation, nth, fault);
    }
  std::cout << operation.name << ": lost at " << calls << " calls, " << 2 * calls << " runs\n";
}

}  // namespace sweep
