// SPDX-License-Identifier: Apache-2.0
// Handles that are null, wrong or freed: every call answers OCI_INVALID_HANDLE and touches nothing.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <set>
#include <vector>

#include "Client.h"

namespace oci_test {
namespace {

// One call with its main handle and its error handle left open.
struct Call {
  const char* name;
  ub4 type;
  std::function<sword(void* handle, OCIError* error)> run;
};

OCIStmt* Stmt(void* handle) { return static_cast<OCIStmt*>(handle); }
OCISvcCtx* Svc(void* handle) { return static_cast<OCISvcCtx*>(handle); }
OCIServer* Srv(void* handle) { return static_cast<OCIServer*>(handle); }
const OraText* Text(const char* text) { return reinterpret_cast<const OraText*>(text); }

ub4 number_out;
OCIBind* bind_out;
OCIDefine* define_out;
void* pointer_out;

std::vector<Call> Calls() {
  return {
      {"OCIServerAttach", OCI_HTYPE_SERVER,
       [](void* h, OCIError* e) { return OCIServerAttach(Srv(h), e, Text("//h/s"), 5, 0); }},
      {"OCIServerDetach", OCI_HTYPE_SERVER,
       [](void* h, OCIError* e) { return OCIServerDetach(Srv(h), e, 0); }},
      {"OCISessionBegin", OCI_HTYPE_SVCCTX,
       [](void* h, OCIError* e) { return OCISessionBegin(Svc(h), e, nullptr, OCI_CRED_RDBMS, 0); }},
      {"OCISessionEnd", OCI_HTYPE_SVCCTX,
       [](void* h, OCIError* e) { return OCISessionEnd(Svc(h), e, nullptr, 0); }},
      {"OCIPing", OCI_HTYPE_SVCCTX, [](void* h, OCIError* e) { return OCIPing(Svc(h), e, 0); }},
      {"OCIBreak", OCI_HTYPE_SVCCTX, [](void* h, OCIError* e) { return OCIBreak(h, e); }},
      {"OCIReset", OCI_HTYPE_SVCCTX, [](void* h, OCIError* e) { return OCIReset(h, e); }},
      {"OCITransCommit", OCI_HTYPE_SVCCTX, [](void* h, OCIError* e) { return OCITransCommit(Svc(h), e, 0); }},
      {"OCITransRollback", OCI_HTYPE_SVCCTX,
       [](void* h, OCIError* e) { return OCITransRollback(Svc(h), e, 0); }},
      {"OCIStmtPrepare", OCI_HTYPE_STMT,
       [](void* h, OCIError* e) { return OCIStmtPrepare(Stmt(h), e, Text("x"), 1, OCI_NTV_SYNTAX, 0); }},
      {"OCIStmtExecute", OCI_HTYPE_STMT,
       [](void* h, OCIError* e) { return OCIStmtExecute(nullptr, Stmt(h), e, 1, 0, nullptr, nullptr, 0); }},
      {"OCIStmtFetch2", OCI_HTYPE_STMT,
       [](void* h, OCIError* e) { return OCIStmtFetch2(Stmt(h), e, 1, OCI_FETCH_NEXT, 0, 0); }},
      {"OCIBindByPos", OCI_HTYPE_STMT,
       [](void* h, OCIError* e) {
         return OCIBindByPos(Stmt(h), &bind_out, e, 1, &number_out, 4, SQLT_INT, nullptr, nullptr, nullptr, 0,
                             nullptr, 0);
       }},
      {"OCIBindByName", OCI_HTYPE_STMT,
       [](void* h, OCIError* e) {
         return OCIBindByName(Stmt(h), &bind_out, e, Text("a"), 1, &number_out, 4, SQLT_INT, nullptr, nullptr,
                              nullptr, 0, nullptr, 0);
       }},
      {"OCIBindArrayOfStruct", OCI_HTYPE_BIND,
       [](void* h, OCIError* e) { return OCIBindArrayOfStruct(static_cast<OCIBind*>(h), e, 0, 0, 0, 0); }},
      {"OCIDefineByPos", OCI_HTYPE_STMT,
       [](void* h, OCIError* e) {
         return OCIDefineByPos(Stmt(h), &define_out, e, 1, &number_out, 4, SQLT_INT, nullptr, nullptr,
                               nullptr, 0);
       }},
      {"OCIAttrGet", OCI_HTYPE_STMT,
       [](void* h, OCIError* e) {
         return OCIAttrGet(h, OCI_HTYPE_STMT, &number_out, nullptr, OCI_ATTR_ROW_COUNT, e);
       }},
      {"OCIAttrSet", OCI_HTYPE_SESSION,
       [](void* h, OCIError* e) {
         return OCIAttrSet(h, OCI_HTYPE_SESSION, const_cast<char*>("x"), 1, OCI_ATTR_USERNAME, e);
       }},
      {"OCIParamGet", OCI_HTYPE_STMT,
       [](void* h, OCIError* e) { return OCIParamGet(h, OCI_HTYPE_STMT, e, &pointer_out, 1); }},
      {"OCIServerVersion", OCI_HTYPE_SVCCTX,
       [](void* h, OCIError* e) {
         OraText text[10];
         return OCIServerVersion(h, e, text, sizeof text, OCI_HTYPE_SVCCTX);
       }},
  };
}

void* Allocated(Client& client, ub4 type) {
  void* handle = nullptr;
  OCIHandleAlloc(client.env, &handle, type, 0, nullptr);
  return handle;
}

TEST(Handles, NullIsNoHandleForAnyCall) {
  Client client;
  for (const Call& call : Calls())
    EXPECT_EQ(call.run(nullptr, client.error), OCI_INVALID_HANDLE) << call.name;
}

TEST(Handles, AHandleOfAnotherTypeIsRefusedByEveryCall) {
  Client client;
  for (const Call& call : Calls())
    EXPECT_EQ(call.run(client.error, client.error), OCI_INVALID_HANDLE) << call.name;
}

TEST(Handles, MemoryThatIsNoHandleIsRefusedByEveryCall) {
  Client client;
  std::vector<char> memory(4096, 'x');
  for (const Call& call : Calls())
    EXPECT_EQ(call.run(memory.data(), client.error), OCI_INVALID_HANDLE) << call.name;
}

TEST(Handles, AFreedHandleIsRefusedByEveryCall) {
  Client client;
  for (const Call& call : Calls()) {
    if (call.type == OCI_HTYPE_BIND) continue;  // freed with its statement, see below
    void* handle = Allocated(client, call.type);
    ASSERT_EQ(OCIHandleFree(handle, call.type), OCI_SUCCESS) << call.name;
    void* successor = Allocated(client, call.type);  // may well lie where the freed one lay
    EXPECT_EQ(call.run(handle, client.error), OCI_INVALID_HANDLE) << call.name;
    OCIHandleFree(successor, call.type);
  }
}

TEST(Handles, ANullOrFreedErrorHandleIsRefusedByEveryCall) {
  Client client;
  const auto freed = static_cast<OCIError*>(Allocated(client, OCI_HTYPE_ERROR));
  OCIHandleFree(freed, OCI_HTYPE_ERROR);
  for (const Call& call : Calls()) {
    if (call.type == OCI_HTYPE_BIND) continue;
    void* handle = Allocated(client, call.type);
    EXPECT_EQ(call.run(handle, nullptr), OCI_INVALID_HANDLE) << call.name;
    EXPECT_EQ(call.run(handle, freed), OCI_INVALID_HANDLE) << call.name;
  }
}

TEST(Handles, ThousandsMayLiveAtOnceAndEachIsItself) {
  Client client;
  std::set<void*> handles;
  for (int i = 0; i < 3000; ++i) handles.insert(Allocated(client, OCI_HTYPE_STMT));
  EXPECT_EQ(handles.size(), 3000u);
  for (void* handle : handles) EXPECT_EQ(OCIHandleFree(handle, OCI_HTYPE_STMT), OCI_SUCCESS);
  for (void* handle : handles) EXPECT_EQ(OCIHandleFree(handle, OCI_HTYPE_STMT), OCI_INVALID_HANDLE);
}

TEST(Handles, ANumberNearAHandleIsNone) {
  Client client;
  void* handle = Allocated(client, OCI_HTYPE_STMT);
  const auto number = reinterpret_cast<std::uintptr_t>(handle);
  for (unsigned bit = 0; bit < 64; ++bit) {
    void* near = reinterpret_cast<void*>(number ^ std::uintptr_t{1} << bit);
    EXPECT_EQ(OCIHandleFree(near, OCI_HTYPE_STMT), OCI_INVALID_HANDLE) << "bit " << bit;
  }
  EXPECT_EQ(OCIHandleFree(handle, OCI_HTYPE_STMT), OCI_SUCCESS);
}

TEST(Handles, NoHandleIsAnAddress) {
  Client client;
  constexpr unsigned kAddressBits = 57;  // of a process, at most
  const auto number = reinterpret_cast<std::uintptr_t>(Allocated(client, OCI_HTYPE_STMT));
  EXPECT_NE(number >> kAddressBits, 0u);
}

TEST(Handles, FreeingTwiceIsRefused) {
  Client client;
  void* handle = Allocated(client, OCI_HTYPE_STMT);
  EXPECT_EQ(OCIHandleFree(handle, OCI_HTYPE_STMT), OCI_SUCCESS);
  EXPECT_EQ(OCIHandleFree(handle, OCI_HTYPE_STMT), OCI_INVALID_HANDLE);
}

TEST(Handles, FreeingAsAnotherTypeIsRefusedAndFreesNothing) {
  Client client;
  void* handle = Allocated(client, OCI_HTYPE_STMT);
  EXPECT_EQ(OCIHandleFree(handle, OCI_HTYPE_SERVER), OCI_INVALID_HANDLE);
  EXPECT_EQ(OCIHandleFree(handle, OCI_HTYPE_STMT), OCI_SUCCESS);
}

TEST(Handles, FreeingTheEnvironmentFreesEverythingBelow) {
  OCIEnv* env = nullptr;
  ASSERT_EQ(OCIEnvCreate(&env, OCI_THREADED, nullptr, nullptr, nullptr, nullptr, 0, nullptr), OCI_SUCCESS);
  void* statement = nullptr;
  ASSERT_EQ(OCIHandleAlloc(env, &statement, OCI_HTYPE_STMT, 0, nullptr), OCI_SUCCESS);
  ASSERT_EQ(OCIHandleFree(env, OCI_HTYPE_ENV), OCI_SUCCESS);
  EXPECT_EQ(OCIHandleFree(statement, OCI_HTYPE_STMT), OCI_INVALID_HANDLE);
}

TEST(Handles, FreeingAStatementFreesItsBindsAndDefines) {
  Client client;
  OCIBind* bind = nullptr;
  {
    Statement statement(client, "INSERT INTO T VALUES (:1)");
    ub4 value = 1;
    ASSERT_EQ(OCIBindByPos(statement.handle, &bind, client.error, 1, &value, 4, SQLT_INT, nullptr, nullptr,
                           nullptr, 0, nullptr, OCI_DEFAULT),
              OCI_SUCCESS);
    EXPECT_EQ(OCIBindArrayOfStruct(bind, client.error, 4, 0, 0, 0), OCI_SUCCESS);
  }
  EXPECT_EQ(OCIBindArrayOfStruct(bind, client.error, 4, 0, 0, 0), OCI_INVALID_HANDLE);
}

TEST(Handles, PreparingAgainFreesTheBindsOfTheOldText) {
  Client client;
  Statement statement(client, "INSERT INTO T VALUES (:1)");
  OCIBind* bind = nullptr;
  ub4 value = 1;
  OCIBindByPos(statement.handle, &bind, client.error, 1, &value, 4, SQLT_INT, nullptr, nullptr, nullptr, 0,
               nullptr, OCI_DEFAULT);
  statement.Prepare("INSERT INTO T VALUES (:1)");
  EXPECT_EQ(OCIBindArrayOfStruct(bind, client.error, 4, 0, 0, 0), OCI_INVALID_HANDLE);
}

TEST(Handles, WhatABindPointerHeldBeforeIsNotLookedAt) {
  Client client;
  Statement statement(client, "INSERT INTO T VALUES (:1)");
  auto* garbage = reinterpret_cast<OCIBind*>(0x1234567);
  OCIBind* bind = garbage;
  ub4 value = 1;
  EXPECT_EQ(OCIBindByPos(statement.handle, &bind, client.error, 1, &value, 4, SQLT_INT, nullptr, nullptr,
                         nullptr, 0, nullptr, OCI_DEFAULT),
            OCI_SUCCESS);
  EXPECT_NE(bind, garbage);
}

TEST(Handles, AnUnknownHandleTypeIsNotAllocated) {
  Client client;
  void* handle = nullptr;
  EXPECT_EQ(OCIHandleAlloc(client.env, &handle, OCI_HTYPE_DEFINE, 0, nullptr), OCI_INVALID_HANDLE);
  EXPECT_EQ(OCIHandleAlloc(client.env, &handle, 4711, 0, nullptr), OCI_INVALID_HANDLE);
  EXPECT_EQ(OCIHandleAlloc(client.error, &handle, OCI_HTYPE_STMT, 0, nullptr), OCI_INVALID_HANDLE);
  EXPECT_EQ(OCIHandleAlloc(client.env, nullptr, OCI_HTYPE_STMT, 0, nullptr), OCI_INVALID_HANDLE);
}

TEST(Handles, TheEnvironmentKeepsTheErrorOfAFailedAllocation) {
  Client client;
  void* handle = nullptr;
  OCIHandleAlloc(client.env, &handle, 4711, 0, nullptr);
  sb4 code = 0;
  OraText text[512];
  EXPECT_EQ(OCIErrorGet(client.env, 1, nullptr, &code, text, sizeof text, OCI_HTYPE_ENV), OCI_SUCCESS);
  EXPECT_EQ(code, 24316);
}

TEST(Handles, DescriptorsThatAreNoneAreRefused) {
  Client client;
  EXPECT_EQ(OCIDescriptorFree(nullptr, OCI_DTYPE_PARAM), OCI_INVALID_HANDLE);
  EXPECT_EQ(OCIDescriptorFree(client.error, OCI_DTYPE_PARAM), OCI_INVALID_HANDLE);
}

TEST(Handles, AnEnvironmentNeedsAPlaceToGo) {
  EXPECT_EQ(OCIEnvCreate(nullptr, OCI_DEFAULT, nullptr, nullptr, nullptr, nullptr, 0, nullptr),
            OCI_INVALID_HANDLE);
  OCIEnv* env = nullptr;
  ASSERT_EQ(OCIEnvNlsCreate(&env, OCI_DEFAULT, nullptr, nullptr, nullptr, nullptr, 0, nullptr, 873, 873),
            OCI_SUCCESS);
  EXPECT_EQ(OCIHandleFree(env, OCI_HTYPE_ENV), OCI_SUCCESS);
}

// Errors that need no server.
TEST(Errors, ARecordHoldsNumberAndTextWithItsLineEnd) {
  Client client;
  Statement statement(client);
  EXPECT_EQ(statement.Execute(), OCI_ERROR);
  EXPECT_EQ(client.LastReport().code, 24337);
  EXPECT_EQ(client.LastReport().text, "ORA-24337: statement handle not prepared\n");
}

TEST(Errors, ThereIsOneRecordAndNothingBehindIt) {
  Client client;
  Statement(client).Execute();
  sb4 code = 0;
  OraText text[100];
  EXPECT_EQ(OCIErrorGet(client.error, 2, nullptr, &code, text, sizeof text, OCI_HTYPE_ERROR), OCI_NO_DATA);
  EXPECT_EQ(OCIErrorGet(client.error, 0, nullptr, &code, text, sizeof text, OCI_HTYPE_ERROR), OCI_NO_DATA);
}

TEST(Errors, ASuccessfulCallClearsTheRecord) {
  Client client;
  Statement statement(client);
  statement.Execute();
  ASSERT_EQ(statement.Prepare("SELECT 1 FROM DUAL"), OCI_SUCCESS);
  EXPECT_EQ(client.Code(), 0);
}

TEST(Errors, ATextThatDoesNotFitIsCutAndEnded) {
  Client client;
  Statement(client).Execute();
  sb4 code = 0;
  OraText text[10];
  std::memset(text, 'x', sizeof text);
  EXPECT_EQ(OCIErrorGet(client.error, 1, nullptr, &code, text, sizeof text, OCI_HTYPE_ERROR), OCI_ERROR);
  EXPECT_EQ(code, 24337);
  EXPECT_STREQ(reinterpret_cast<char*>(text), "ORA-24337");
}

TEST(Errors, AnUnknownAttributeIsRefused) {
  Client client;
  ub4 value = 7;
  EXPECT_EQ(OCIAttrGet(client.server, OCI_HTYPE_SERVER, &value, nullptr, OCI_ATTR_ROW_COUNT, client.error),
            OCI_ERROR);
  EXPECT_EQ(client.Code(), 24315);
  EXPECT_EQ(value, 7u);
  EXPECT_EQ(OCIAttrSet(client.server, OCI_HTYPE_SERVER, &value, 0, OCI_ATTR_ROW_COUNT, client.error),
            OCI_ERROR);
  EXPECT_EQ(client.Code(), 24315);
}

TEST(Errors, AnOpenQuoteIsFoundWhenPreparing) {
  Client client;
  Statement statement(client);
  EXPECT_EQ(statement.Prepare("SELECT 'abc FROM DUAL"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1756);
  EXPECT_EQ(statement.Execute(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 24337);
}

TEST(Statements, TheirTypeIsKnownOncePrepared) {
  Client client;
  const auto type = [&](const char* text) {
    Statement statement(client, text);
    return statement.Attribute<ub2>(OCI_ATTR_STMT_TYPE);
  };
  EXPECT_EQ(type("SELECT 1 FROM DUAL"), OCI_STMT_SELECT);
  EXPECT_EQ(type("update t set a = 1"), OCI_STMT_UPDATE);
  EXPECT_EQ(type("DELETE FROM T"), OCI_STMT_DELETE);
  EXPECT_EQ(type("INSERT INTO T VALUES (1)"), OCI_STMT_INSERT);
  EXPECT_EQ(type("CREATE TABLE T (A NUMBER)"), OCI_STMT_CREATE);
  EXPECT_EQ(type("DROP TABLE T"), OCI_STMT_DROP);
  EXPECT_EQ(type("BEGIN NULL; END;"), OCI_STMT_BEGIN);
}

TEST(Statements, BindsAreCheckedAgainstThePlaceholders) {
  Client client;
  Statement statement(client, "INSERT INTO T VALUES (:A, :B)");
  EXPECT_EQ(statement.Attribute<ub4>(OCI_ATTR_BIND_COUNT), 2u);
  ub4 value = 1;
  EXPECT_EQ(statement.Bind(0, &value, 4, SQLT_INT), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1036);
  EXPECT_EQ(statement.Bind(3, &value, 4, SQLT_INT), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1036);
  OCIBind* bind = nullptr;
  const auto by_name = [&](const char* name) {
    return OCIBindByName(statement.handle, &bind, client.error, Text(name),
                         static_cast<sb4>(std::strlen(name)), &value, 4, SQLT_INT, nullptr, nullptr, nullptr,
                         0, nullptr, OCI_DEFAULT);
  };
  EXPECT_EQ(by_name(":a"), OCI_SUCCESS);
  EXPECT_EQ(by_name("B"), OCI_SUCCESS);
  EXPECT_EQ(by_name("C"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1036);
}

TEST(Statements, ATypeThatCannotBeBoundOrDefinedIsRefusedAtOnce) {
  Client client;
  Statement statement(client, "INSERT INTO T VALUES (:A)");
  char value[30] = {};
  EXPECT_EQ(statement.Bind(1, value, 8, SQLT_CLOB), OCI_ERROR);
  EXPECT_EQ(client.Code(), 3115);
  EXPECT_EQ(statement.Bind(1, value, 3, SQLT_INT), OCI_ERROR);
  EXPECT_EQ(client.Code(), 3115);
  EXPECT_EQ(statement.Define(1, value, 8, SQLT_TIMESTAMP), OCI_ERROR);
  EXPECT_EQ(client.Code(), 3115);
}

TEST(Client, FollowsReleaseNineteen) {
  sword parts[5] = {-1, -1, -1, -1, -1};
  OCIClientVersion(&parts[0], &parts[1], &parts[2], &parts[3], &parts[4]);
  EXPECT_EQ(parts[0], 19);
  EXPECT_EQ(parts[4], 0);
}

}  // namespace
}  // namespace oci_test
