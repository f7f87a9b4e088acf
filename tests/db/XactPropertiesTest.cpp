// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "db/Xact.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::unique_ptr<CXact> MakeXact() {
  auto xact = std::make_unique<CXact>();
  xact->SetName(L"Insert");
  xact->SetDescription(L"inserts <one> row");
  xact->SetXactID(200);
  xact->SetTransactionType(TRANSACTION);
  xact->SetWeight(4);
  xact->SetUserLoad(2);
  return xact;
}

int Put(CXact& xact, const wchar_t* data, SerializeMode mode = Json) {
  Context context;
  context.szRequestData = data;
  context.nContextType = mode;
  LKString response;
  return xact.DoPut(context, response);
}

TEST(XactPropertyTable, NamesTheIdentityWeightAndLoad) {
  const auto xact = MakeXact();
  std::vector<REST_PROPERTY_ENTRY> table;
  xact->GetPropertyTable(table);
  std::vector<std::string> names;
  for (const auto& entry : table)
    names.push_back(entry.szName.ToChar() + (entry.bReadOnly ? " (fixed)" : ""));
  EXPECT_THAT(names, ElementsAre("Name", "Description", "XactID (fixed)", "TransactionType (fixed)", "Weight",
                                 "UserLoad"));
}

TEST(XactPropertyTable, IsWhatAGetAnswersWith) {
  const auto xact = MakeXact();
  LKString response;
  EXPECT_EQ(xact->DoGet(Context(), response), 200);
  EXPECT_THAT(response.ToChar(), HasSubstr("Insert"));
  EXPECT_THAT(response.ToChar(), HasSubstr("200"));
}

TEST(XactPut, ChangesTheNamedPropertiesOnly) {
  const auto xact = MakeXact();
  EXPECT_EQ(Put(*xact, L"{\"Weight\": 9}"), 200);
  EXPECT_EQ(xact->GetWeight(), 9);
  EXPECT_EQ(xact->GetUserLoad(), 2);
  EXPECT_EQ(xact->GetName(), LKString(L"Insert"));
}

TEST(XactPut, OfANegativeWeightOrLoadChangesNothing) {
  const auto xact = MakeXact();
  EXPECT_EQ(Put(*xact, L"{\"Name\": \"Other\", \"Weight\": -1}"), 400);
  EXPECT_EQ(Put(*xact, L"{\"UserLoad\": -1}"), 400);
  EXPECT_EQ(xact->GetWeight(), 4);
  EXPECT_EQ(xact->GetUserLoad(), 2);
  EXPECT_EQ(xact->GetName(), LKString(L"Insert"));
}

TEST(XactPut, OfATextThatCannotBeReadChangesNothing) {
  const auto xact = MakeXact();
  EXPECT_EQ(Put(*xact, L"{\"Weight\": "), 400);
  EXPECT_EQ(xact->GetWeight(), 4);
}

TEST(XactSetProperty, TakesTheValueOfAKnownPropertyThatMayChange) {
  const auto xact = MakeXact();
  LKString name = L"Weight";
  LKString value = L"7";
  EXPECT_EQ(xact->SetProperty(name, value), 1);
  EXPECT_EQ(xact->GetWeight(), 7);
  name = L"Description";
  value = L"says \"hello\"";
  EXPECT_EQ(xact->SetProperty(name, value), 1);
  EXPECT_EQ(xact->GetDescription(), LKString(L"says \"hello\""));
}

TEST(XactSetProperty, RefusesUnknownAndFixedPropertiesAndBadValues) {
  const auto xact = MakeXact();
  LKString name = L"Colour";
  LKString value = L"7";
  EXPECT_EQ(xact->SetProperty(name, value), 0);
  name = L"XactID";
  EXPECT_EQ(xact->SetProperty(name, value), 0);
  EXPECT_EQ(xact->GetXactID(), 200);
  name = L"Weight";
  value = L"heavy";
  EXPECT_EQ(xact->SetProperty(name, value), 0);
  value = L"-3";
  EXPECT_EQ(xact->SetProperty(name, value), 0);
  EXPECT_EQ(xact->GetWeight(), 4);
}

TEST(XactSetChildObject, FindsNoneInTheBaseClass) {
  CXact xact;
  LKString name = L"Child";
  LKString value = L"x";
  EXPECT_EQ(xact.SetChildObject(name, value), 0);
}

class XactArchive : public testing::TestWithParam<SerializeMode> {};

TEST_P(XactArchive, GivesBackWhatWasStored) {
  const auto stored = MakeXact();
  CLKArchive out(GetParam());
  stored->Serialize(out);
  CLKArchive in(GetParam(), out.GetText());
  ASSERT_TRUE(in.IsGood());
  CXact loaded;
  loaded.Serialize(in);
  EXPECT_EQ(loaded.GetName(), LKString(L"Insert"));
  EXPECT_EQ(loaded.GetDescription(), LKString(L"inserts <one> row"));
  EXPECT_EQ(loaded.GetXactID(), 200);
  EXPECT_EQ(loaded.GetTransactionType(), TRANSACTION);
  EXPECT_EQ(loaded.GetWeight(), 4);
  EXPECT_EQ(loaded.GetUserLoad(), 2);
}

INSTANTIATE_TEST_SUITE_P(Modes, XactArchive, testing::Values(Xml, Json));

TEST(XactCopy, TakesTheDescriptionAndSettingsAndNothingOfTheRun) {
  const auto original = MakeXact();
  CSSBenchmark benchmark;
  CBenchmarkProperties properties;
  properties.SetScale(2.5);
  original->SetBenchmarkProperties(properties);
  original->SetBenchmark(&benchmark);
  original->SetUserID(3);
  original->RequestCancel();
  original->PostExecute();
  CXact copy(*original);
  EXPECT_EQ(copy.GetName(), LKString(L"Insert"));
  EXPECT_EQ(copy.GetXactID(), 200);
  EXPECT_EQ(copy.GetWeight(), 4);
  EXPECT_EQ(copy.GetBenchmarkProperties().GetScale(), 2.5);
  EXPECT_EQ(copy.GetBenchmark(), nullptr);
  EXPECT_EQ(copy.GetUserID(), 0);
  EXPECT_EQ(copy.CancelXact(), 0);
  CXactResults results;
  copy.GetXactResults(&results);
  EXPECT_EQ(results.m_nExecutions, 0);
}

TEST(XactCopy, OfANullPointerFails) {
  const auto xact = MakeXact();
  EXPECT_EQ(xact->CopyObject(nullptr), 0);
  EXPECT_EQ(xact->GetXactID(), 200);
  CXact other;
  EXPECT_EQ(other.CopyObject(xact.get()), 1);
  EXPECT_EQ(other.GetXactID(), 200);
}

}  // namespace
