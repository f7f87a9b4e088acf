// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "core/LKTypes.h"
#include "core/RestObject.h"

namespace {

class Child : public CRestObject {
 public:
  void GetPropertyTable(std::vector<REST_PROPERTY_ENTRY>& table) override {
    table.push_back({L"Weight", REST_INT, &nWeight, false});
    table.push_back({L"Rows", REST_INT64, &nRows, true});
    table.push_back({L"Scale", REST_DOUBLE, &fScale, false});
    table.push_back({L"Name", REST_STRING, &szName, false});
  }
  int nWeight = 1;
  __int64 nRows = 5000000000;
  double fScale = 1.5;
  LKString szName = L"a <b>";
};

class Root : public CRestObject {
 public:
  CRestObject* GetNextObject(LKString szName) override {
    return szName == LKString(L"child") ? &child : nullptr;
  }
  Child child;
};

Context Request(int nMethod, const wchar_t* szURI, const wchar_t* szData = L"", SerializeMode eMode = Json) {
  Context context;
  context.nMethod = nMethod;
  context.szRestURI = szURI;
  context.szRequestData = szData;
  context.nContextType = eMode;
  context.nAcceptType = eMode;
  return context;
}

class RestObject : public testing::Test {
 protected:
  int Put(const wchar_t* szData, SerializeMode eMode = Json) {
    return m_root.ProcessRequest(Request(REST_PUT, L"/child", szData, eMode), m_response);
  }

  Root m_root;
  LKString m_response;
};

}  // namespace

TEST_F(RestObject, PostAndDeleteAnswer405) {
  EXPECT_EQ(m_root.child.DoPost({}, m_response), 405);
  EXPECT_EQ(m_root.child.DoDelete({}, m_response), 405);
  EXPECT_EQ(m_root.ProcessRequest(Request(REST_POST, L"/child"), m_response), 405);
  EXPECT_EQ(m_root.ProcessRequest(Request(REST_DELETE, L"/child"), m_response), 405);
  EXPECT_EQ(m_root.ProcessRequest(Request(17, L"/child"), m_response), 405);
}

TEST_F(RestObject, IsValidAndAppliesByDefault) {
  EXPECT_EQ(m_root.IsValid(), 1);
  EXPECT_EQ(m_root.Apply(), 1);
}

TEST_F(RestObject, GetGivesTheProperties) {
  EXPECT_EQ(m_root.ProcessRequest(Request(REST_GET, L"child"), m_response), 200);
  EXPECT_EQ(
      m_response,
      LKString(L"{\n  \"Weight\": 1,\n  \"Rows\": 5000000000,\n  \"Scale\": 1.5,\n  \"Name\": \"a <b>\"\n}"));
  EXPECT_EQ(m_root.ProcessRequest(Request(REST_GET, L"child", L"", Xml), m_response), 200);
  EXPECT_EQ(m_response, LKString(L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<properties>"
                                 L"<property name=\"Weight\">1</property>"
                                 L"<property name=\"Rows\">5000000000</property>"
                                 L"<property name=\"Scale\">1.5</property>"
                                 L"<property name=\"Name\">a &lt;b&gt;</property></properties>\n"));
}

TEST_F(RestObject, GetOfAnObjectWithoutPropertiesIsAnEmptyList) {
  EXPECT_EQ(m_root.ProcessRequest(Request(REST_GET, L""), m_response), 200);
  EXPECT_EQ(m_response, LKString(L"{}"));
}

TEST_F(RestObject, PutChangesWhatItNames) {
  EXPECT_EQ(Put(L"{\"Weight\": 7, \"Name\": \"new\"}"), 200);
  EXPECT_EQ(m_root.child.nWeight, 7);
  EXPECT_EQ(m_root.child.szName, LKString(L"new"));
  EXPECT_EQ(m_root.child.fScale, 1.5);
  EXPECT_EQ(Put(L"<properties><property name='Scale'>2.25</property></properties>", Xml), 200);
  EXPECT_EQ(m_root.child.fScale, 2.25);
}

TEST_F(RestObject, PutTakesNumbersAsTexts) {
  EXPECT_EQ(Put(L"{\"Weight\": \"8\"}"), 200);
  EXPECT_EQ(m_root.child.nWeight, 8);
}

TEST_F(RestObject, RefusedPutChangesNothingAndSaysWhy) {
  EXPECT_EQ(Put(L"{\"Weight\": 7, \"Nme\": \"x\"}"), 400);
  EXPECT_EQ(m_response, LKString(L"There is no property \"Nme\"."));
  EXPECT_EQ(Put(L"{\"Weight\": 7, \"Rows\": 1}"), 400);
  EXPECT_EQ(m_response, LKString(L"The property \"Rows\" is read-only."));
  EXPECT_EQ(Put(L"{\"Scale\": 9, \"Weight\": 2147483648}"), 400);
  EXPECT_EQ(m_response, LKString(L"\"2147483648\" is no value of the property \"Weight\"."));
  for (const wchar_t* bad : {L"{\"Weight\": 1.5}", L"{\"Weight\": \" 7\"}", L"{\"Weight\": \"7x\"}",
                             L"{\"Weight\": \"\"}", L"{\"Weight\": true}", L"no list"})
    EXPECT_EQ(Put(bad), 400) << LKString(bad).ToChar();
  EXPECT_EQ(m_response, LKString(L"The request is not a list of named values."));
  EXPECT_EQ(m_root.child.nWeight, 1);
  EXPECT_EQ(m_root.child.nRows, 5000000000);
  EXPECT_EQ(m_root.child.fScale, 1.5);
}

TEST_F(RestObject, UnknownChildIsNotFound) {
  EXPECT_EQ(m_root.ProcessRequest(Request(REST_GET, L"/nobody"), m_response), 404);
  EXPECT_EQ(m_root.ProcessRequest(Request(REST_GET, L"/child/below"), m_response), 404);
}

TEST_F(RestObject, EmptySegmentsOfThePathDoNotCount) {
  EXPECT_EQ(m_root.ProcessRequest(Request(REST_GET, L"//child/"), m_response), 200);
}
