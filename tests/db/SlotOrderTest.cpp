// SPDX-License-Identifier: Apache-2.0
// The order of the virtual tables, which plug-ins are built against. A class that derives from wxObject first
// has wxObject's five slots: class information and destructor (two slots, whose address cannot be taken) in
// the order of the installed wxWidgets, then the reference data. CRestObject has its destructor in slots 1
// and 2.
#include <gtest/gtest.h>

#include "FieldOrder.h"
#include "ForeignDriver.h"
#include "VtableSlot.h"
#include "db/DriverBase.h"
#include "db/SSBenchmark.h"
#include "db/Xact.h"

namespace {

struct ProtectedXact : CXact {
  using CXact::CloneRefData;
  using CXact::CreateRefData;
};

TEST(SlotOrder, OfATransactionStartsWithTheSlotsOfWxObject) {
  EXPECT_EQ(VtableSlot(&CXact::GetClassInfo), VtableSlot(&wxObject::GetClassInfo));
  EXPECT_LT(VtableSlot(&CXact::GetClassInfo), 3);
  EXPECT_EQ(VtableSlot(&ProtectedXact::CreateRefData), 3);
  EXPECT_EQ(VtableSlot(&ProtectedXact::CloneRefData), 4);
}

TEST(SlotOrder, OfATransactionFromItsArchiveToItsDriver) {
  EXPECT_EQ(VtableSlot(&CXact::Serialize), 5);
  EXPECT_EQ(VtableSlot(&CXact::SetProperty), 6);
  EXPECT_EQ(VtableSlot(&CXact::SetChildObject), 7);
  EXPECT_EQ(VtableSlot(&CXact::GetDriverType), 8);
  EXPECT_EQ(VtableSlot(&CXact::Execute), 9);
  EXPECT_EQ(VtableSlot(&CXact::CalculateResults), 10);
  EXPECT_EQ(VtableSlot(&CXact::CanSearchReplace), 11);
  EXPECT_EQ(VtableSlot(&CXact::GlobalSearchReplace), 12);
  EXPECT_EQ(VtableSlot(&CXact::ClearResults), 13);
  EXPECT_EQ(VtableSlot(&CXact::ClearDistributions), 14);
  EXPECT_EQ(VtableSlot(&CXact::GetXactResults), 15);
  EXPECT_EQ(VtableSlot(&CXact::SetDriver), 16);
  EXPECT_EQ(VtableSlot(&CXact::SetBenchmark), 17);
}

TEST(SlotOrder, OfATransactionsLifecycle) {
  EXPECT_EQ(VtableSlot(&CXact::InitializeForTest), 18);
  EXPECT_EQ(VtableSlot(&CXact::OpenResultsFile), 19);
  EXPECT_EQ(VtableSlot(&CXact::CloseResultsFile), 20);
  EXPECT_EQ(VtableSlot(&CXact::PreExecute), 21);
  EXPECT_EQ(VtableSlot(&CXact::PostExecute), 22);
  EXPECT_EQ(VtableSlot(&CXact::PreBenchmark), 23);
  EXPECT_EQ(VtableSlot(&CXact::PostBenchmark), 24);
  EXPECT_EQ(VtableSlot(&CXact::PreIteration), 25);
  EXPECT_EQ(VtableSlot(&CXact::PostIteration), 26);
}

TEST(SlotOrder, OfATransactionsDescription) {
  EXPECT_EQ(VtableSlot(&CXact::IsUserXact), 27);
  EXPECT_EQ(VtableSlot(&CXact::IsInUserXact), 28);
  EXPECT_EQ(VtableSlot(&CXact::GetNextXactToExecute), 29);
  EXPECT_EQ(VtableSlot(&CXact::SetScriptEngine), 30);
  EXPECT_EQ(VtableSlot(&CXact::GetScript), 31);
  EXPECT_EQ(VtableSlot(&CXact::GetXactCount), 32);
  EXPECT_EQ(VtableSlot(&CXact::GetXacts), 33);
  EXPECT_EQ(VtableSlot(&CXact::GetFileName), 34);
  EXPECT_EQ(VtableSlot(&CXact::ConvertToSQLStatement), 35);
  EXPECT_EQ(VtableSlot(&CXact::GetPreparedSQLName), 36);
  EXPECT_EQ(VtableSlot(&CXact::SetFreeAfterExecute), 37);
  EXPECT_EQ(VtableSlot(&CXact::IsFreeAfterExecute), 38);
  EXPECT_EQ(VtableSlot(&CXact::GetDetailInformation), 39);
  EXPECT_EQ(VtableSlot(&CXact::GetExecuteSQL), 40);
}

TEST(SlotOrder, OfATransactionsOwnVersionsOfTheResourceOperations) {
  EXPECT_EQ(VtableSlot(&CXact::GetNextObject), 41);
  EXPECT_EQ(VtableSlot(static_cast<CXact& (CXact::*)(const CXact&)>(&CXact::operator=)), 42);
  EXPECT_EQ(VtableSlot(&CXact::CopyObject), 43);
  EXPECT_EQ(VtableSlot(&CXact::DoPut), 44);
  EXPECT_EQ(VtableSlot(&CXact::GetPropertyTable), 45);
}

TEST(SlotOrder, OfAResource) {
  EXPECT_EQ(VtableSlot(&CRestObject::GetPropertyTable), 0);
  EXPECT_EQ(VtableSlot(&CRestObject::ProcessRequest), 3);
  EXPECT_EQ(VtableSlot(&CRestObject::GetNextObject), 4);
  EXPECT_EQ(VtableSlot(&CRestObject::DoGet), 5);
  EXPECT_EQ(VtableSlot(&CRestObject::DoPut), 6);
  EXPECT_EQ(VtableSlot(&CRestObject::DoPost), 7);
  EXPECT_EQ(VtableSlot(&CRestObject::DoDelete), 8);
  EXPECT_EQ(VtableSlot(&CRestObject::IsValid), 9);
  EXPECT_EQ(VtableSlot(&CRestObject::Apply), 10);
}

TEST(SlotOrder, OfABenchmark) {
  EXPECT_EQ(VtableSlot(&CSSBenchmark::GetClassInfo), VtableSlot(&wxObject::GetClassInfo));
  EXPECT_EQ(VtableSlot(&CSSBenchmark::RegisterTransactions), 5);
  EXPECT_EQ(VtableSlot(&CSSBenchmark::GetNewXactByID), 6);
  EXPECT_EQ(VtableSlot(&CSSBenchmark::GetPropertyPages), 7);
}

TEST(SlotOrder, OfAnErrorHandlerIsItsOneOperation) {
  EXPECT_EQ(VtableSlot(static_cast<int (CErrorHandler::*)(CError*)>(&CErrorHandler::HandleError)), 0);
}

TEST(SlotOrder, AddsNoSlotForTheMessagesOfADriver) {
  EXPECT_EQ(VtableSlot(static_cast<void (CDriverBase::*)(const wchar_t*)>(&CDriverBase::HandleErrorMsg)), -1);
  EXPECT_EQ(VtableSlot(&CDriverBase::Connect), 5);
}

TEST(Layout, OfATransactionIsAnObjectFirstAndAResourceSecond) {
  CXact xact;
  EXPECT_EQ(static_cast<void*>(static_cast<wxObject*>(&xact)), static_cast<void*>(&xact));
  EXPECT_EQ(reinterpret_cast<char*>(static_cast<CRestObject*>(&xact)) - reinterpret_cast<char*>(&xact),
            static_cast<std::ptrdiff_t>(sizeof(wxObject)));
}

// The fields of a transaction that plug-ins use, and those of an error handler.
struct TransactionFields : CXact {
  std::vector<const void*> Addresses() const {
    return {&m_pDriver,
            &m_pBenchmark,
            &m_nUserID,
            &m_szName,
            &m_szDescription,
            &m_nXactID,
            &m_nTransactionType,
            &m_nDriverType,
            &m_BenchmarkProperties,
            &m_Timer,
            &m_Random,
            &m_nXactBytes,
            &m_nTotalUsers,
            &m_nSetNumber,
            &m_nNumberOfSets,
            &m_nRowsProcessed,
            &m_nLastReadTime,
            &m_pParentXact,
            &m_ChildXacts};
  }
};
struct HandlerFields final : CErrorHandler {
  std::vector<const void*> Addresses() const { return {&m_pNextHandler, &m_ErrorHandlerCriticalSection}; }
};

TEST(Layout, OfATransactionHasItsFieldsInOrderBehindBothBases) {
  const TransactionFields xact;
  EXPECT_TRUE(AreInOrder(xact, sizeof(wxObject) + sizeof(CRestObject), xact.Addresses()));
}

TEST(Layout, OfAnErrorHandlerIsItsTableTheNextHandlerAndTheCriticalSection) {
  const HandlerFields handler;
  EXPECT_TRUE(AreInOrder(handler, sizeof(void*), handler.Addresses()));
  EXPECT_EQ(Offsets(handler, handler.Addresses()), (std::vector<std::ptrdiff_t>{8, 16}));
}

TEST(Layout, OfADriverIsAnObjectFirstAndAnErrorHandlerSecond) {
  const scripted::ForeignDriver driver;
  const CDriverBase& base = driver;
  EXPECT_EQ(static_cast<const void*>(static_cast<const wxObject*>(&base)), &base);
  EXPECT_EQ(Offsets(base, {static_cast<const CErrorHandler*>(&base)}).front(),
            static_cast<std::ptrdiff_t>(sizeof(wxObject)));
}

TEST(Layout, OfABenchmarkBeginsWithTheObject) {
  const CSSBenchmark benchmark;
  EXPECT_EQ(static_cast<const void*>(static_cast<const wxObject*>(&benchmark)), &benchmark);
}

TEST(Layout, OfAnErrorHasItsFieldsInTheOrderOfTheContract) {
  const CError error;
  EXPECT_TRUE(AreInOrder(
      error, 0,
      {&error.m_eErrorLevel, &error.m_szErrorNumber, &error.m_szErrorSeverity, &error.m_szErrorMessage,
       &error.m_szErrorLocation, &error.m_bAlwaysDisplay, &error.m_szData}));
  EXPECT_EQ(static_cast<const void*>(&error.m_eErrorLevel), &error);
}

}  // namespace
