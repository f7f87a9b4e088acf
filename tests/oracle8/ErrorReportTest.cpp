// SPDX-License-Identifier: Apache-2.0
// What the driver makes of a failed OCI call that a transaction hands to it.
#include <gmock/gmock.h>

#include "ConnectedDriver.h"
#include "oracle8/OciError.h"

namespace {

using scripted::Fault;
using scripted::Oci;
using scripted::OraFault;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class ErrorReport : public scripted::ConnectedDriver<> {
 protected:
  // Leaves that record in the driver's error handle.
  void FailWith(sb4 code, const std::string& text) {
    Oci().FailCall("OCIPing", 1, OraFault(code, text));
    OCIPing(m_driver.GetOCIServerContext(), m_driver.GetOCIError(), OCI_DEFAULT);
  }
  int Handle(int status) { return m_driver.HandleError(status, m_driver.GetOCIError(), 0, 0); }
};

TEST(OciFailure, HasATextForWhoeverKnowsItOnlyAsAnException) {
  try {
    oracle8::Check(OCI_ERROR, L"prepare");
    FAIL();
  } catch (const std::exception& failure) {
    EXPECT_STREQ(failure.what(), "OCI call failed");
  }
}

TEST_F(ErrorReport, GivesTheNumberInDecimalAndTheTextWithoutItsLineEnd) {
  FailWith(942, "table or view does not exist");
  EXPECT_EQ(Handle(OCI_ERROR), 0);
  ASSERT_EQ(m_reports.Errors().size(), 1u);
  const CError error = m_reports.Errors()[0];
  EXPECT_EQ(error.m_eErrorLevel, ERROR_LEVEL);
  EXPECT_EQ(error.m_szErrorNumber.ToChar(), "942");
  EXPECT_EQ(error.m_szErrorMessage.ToChar(), "ORA-00942: table or view does not exist");
  EXPECT_EQ(error.m_bAlwaysDisplay, 0);
  EXPECT_TRUE(error.m_szErrorSeverity.IsEmpty());
  EXPECT_TRUE(error.m_szErrorLocation.IsEmpty());
  EXPECT_EQ(m_driver.GetLastErrorCode(), 942);
}

TEST_F(ErrorReport, PutsTheCallersTextOnALineOfItsOwnBefore) {
  FailWith(1, "unique constraint (X) violated");
  EXPECT_EQ(m_driver.HandleError(OCI_ERROR, m_driver.GetOCIError(), LKString(L"Insert failed"), 0, 0), 0);
  EXPECT_THAT(m_reports.Reports(),
              ElementsAre("ERROR 1: Insert failed\nORA-00001: unique constraint (X) violated"));
}

TEST_F(ErrorReport, ReadsARecordWhetherTheStatusIsWholeOrMasked) {
  FailWith(942, "missing");
  Handle(OCI_ERROR);
  Handle(OCI_ERROR & 0xFFFF);
  EXPECT_THAT(m_reports.Reports(),
              ElementsAre("ERROR 942: ORA-00942: missing", "ERROR 942: ORA-00942: missing"));
}

TEST_F(ErrorReport, OfASuccessIsNone) {
  FailWith(942, "an older failure");
  EXPECT_EQ(Handle(OCI_SUCCESS), 0);
  EXPECT_EQ(Handle(0x10000), 0);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
  EXPECT_EQ(m_driver.GetLastErrorCode(), 0);
}

TEST_F(ErrorReport, OfAnInvalidHandleHasItsOwnTextAndIgnoresAnOlderRecord) {
  FailWith(942, "an older failure");
  Handle(OCI_INVALID_HANDLE);
  Handle(OCI_INVALID_HANDLE & 0xFFFF);
  const auto text = AllOf(StartsWith("ERROR -1: "), HasSubstr("OCI_INVALID_HANDLE"), Not(HasSubstr("older")));
  EXPECT_THAT(m_reports.Reports(), ElementsAre(text, text));
  EXPECT_EQ(m_driver.GetLastErrorCode(), 0);
}

TEST_F(ErrorReport, WithoutARecordNamesTheStatus) {
  Handle(OCI_STILL_EXECUTING);
  EXPECT_THAT(m_reports.Reports(), ElementsAre(AllOf(StartsWith("ERROR -1: "), HasSubstr("-3123"))));
}

TEST_F(ErrorReport, WithoutAnErrorHandleNamesTheStatus) {
  EXPECT_EQ(m_driver.HandleError(OCI_ERROR, nullptr, 0, 0), 0);
  EXPECT_EQ(m_driver.HandleError(OCI_ERROR, nullptr, LKString(L"No handle"), 0, 0), 0);
  EXPECT_EQ(Oci().CountCalls("OCIErrorGet"), 0);
  EXPECT_THAT(
      m_reports.Reports(),
      ElementsAre("ERROR -1: The Oracle client returned status -1 and left no error record.",
                  "ERROR -1: No handle\nThe Oracle client returned status -1 and left no error record."));
}

TEST_F(ErrorReport, OfAFreedErrorHandleDoesNotCrash) {
  OCIError* const freed = m_driver.GetOCIError();
  m_driver.Disconnect();
  m_driver.HandleError(OCI_ERROR, freed, 0, 0);
  EXPECT_THAT(m_reports.Reports(), ElementsAre(HasSubstr("left no error record")));
}

TEST_F(ErrorReport, OfNoDataIsThatRecord) {
  Oci().FailCall("OCIPing", 1, Fault{OCI_NO_DATA, 1403, "no data found"});
  const sword status = OCIPing(m_driver.GetOCIServerContext(), m_driver.GetOCIError(), OCI_DEFAULT);
  Handle(status);
  EXPECT_THAT(m_reports.Reports(), ElementsAre("ERROR 1403: ORA-01403: no data found"));
}

TEST_F(ErrorReport, IsNotMadeWhileTheNumberIsOnTheIgnoreList) {
  FailWith(942, "missing");
  m_driver.AddIgnoreError(942);
  EXPECT_EQ(Handle(OCI_ERROR), 0);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
  EXPECT_EQ(m_driver.GetLastErrorCode(), 942);
  m_driver.RemoveIgnoreError(942);
  Handle(OCI_ERROR);
  EXPECT_EQ(m_reports.Reports().size(), 1u);
}

TEST_F(ErrorReport, WithTheCallersTextIsNotMadeEitherWhileTheNumberIsIgnored) {
  FailWith(2289, "sequence does not exist");
  m_driver.AddIgnoreError(2289);
  m_driver.HandleError(OCI_ERROR, m_driver.GetOCIError(), LKString(L"Drop"), 0, 0);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(ErrorReport, OfAnotherNumberIsMadeWhileOneIsIgnored) {
  FailWith(54, "resource busy");
  m_driver.AddIgnoreError(942);
  Handle(OCI_ERROR);
  EXPECT_THAT(m_reports.Reports(), ElementsAre("ERROR 54: ORA-00054: resource busy"));
}

TEST_F(ErrorReport, KeepsEveryLineOfALongText) {
  const std::string stack =
      "line 1, column 7:\nPLS-00201: identifier 'X' must be declared\n" + std::string(1500, 'x');
  FailWith(6550, stack);
  Handle(OCI_ERROR);
  EXPECT_THAT(m_reports.Reports(), ElementsAre("ERROR 6550: ORA-06550: " + stack));
}

TEST_F(ErrorReport, GoesAlongTheWholeChain) {
  scripted::RecordingHandler second;
  class Passing final : public CErrorHandler {
  } passing;
  COracle8Driver driver;
  driver.AddHandler(&passing);
  driver.AddHandler(&second);
  driver.HandleError(OCI_INVALID_HANDLE, nullptr, 0, 0);
  EXPECT_EQ(second.Reports().size(), 1u);
}

}  // namespace
