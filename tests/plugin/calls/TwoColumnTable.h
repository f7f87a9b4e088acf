// SPDX-License-Identifier: Apache-2.0
// The calls of a transaction that describes LK_REP_TABLE1, with an ID and a text of 4 bytes, and binds a
// loader to it. stmt#1 is the transaction's own statement, stmt#2 the table's, stmt#3 the loader's.
#pragma once

#include <string>
#include <vector>

#include "CallLists.h"
#include "DescribedTable.h"

namespace scripted {

inline const std::vector<ColumnSpec> kTwoColumns = {IdColumn(), TextColumn("COLUMN1", 4)};

// OCI calls 1 to 16 of an execution.
inline const Events kDescribe = {"OCIHandleAlloc(env#1, 4, 0, null)",
                                 "OCIStmtPrepare(stmt#2, err#1, \"SELECT * FROM LK_REP_TABLE1\", 27, 1, 0)",
                                 "OCIStmtExecute(svc#1, stmt#2, err#1, 0, 0, null, null, 16)",
                                 "OCIAttrGet(stmt#2, 4, null, 18, err#1)",
                                 "OCIParamGet(stmt#2, 4, err#1, 1)",
                                 "OCIAttrGet(par#1, 53, &, 4, err#1)",
                                 "OCIAttrGet(par#1, 53, null, 2, err#1)",
                                 "OCIAttrGet(par#1, 53, null, 1, err#1)",
                                 "OCIAttrGet(par#1, 53, null, 7, err#1)",
                                 "OCIAttrGet(par#1, 53, null, 5, err#1)",
                                 "OCIAttrGet(par#1, 53, null, 6, err#1)",
                                 "OCIParamGet(stmt#2, 4, err#1, 2)",
                                 "OCIAttrGet(par#2, 53, &, 4, err#1)",
                                 "OCIAttrGet(par#2, 53, null, 2, err#1)",
                                 "OCIAttrGet(par#2, 53, null, 1, err#1)",
                                 "OCIAttrGet(par#2, 53, null, 7, err#1)"};

// OCI calls 17 to 22.
inline const Events kBind = {
    "OCIHandleAlloc(env#1, 4, 0, null)",
    "OCIStmtPrepare(stmt#3, err#1, \"INSERT INTO LK_REP_TABLE1 (ID, COLUMN1) VALUES (:ID, :COLUMN1)\", 62, "
    "1, 0)",
    "OCIBindByPos(stmt#3, err#1, 1, &, 8, 4, &, null, null, 0, null, 0)",
    "OCIBindArrayOfStruct(bind#1, err#1, 8, 0, 0, 0)",
    "OCIBindByPos(stmt#3, err#1, 2, &, 5, 5, &, null, null, 0, null, 0)",
    "OCIBindArrayOfStruct(bind#2, err#1, 5, 0, 0, 0)"};

inline const std::string kFreeLoader = "OCIHandleFree(stmt#3, 4)";
inline const std::string kFreeTable = "OCIHandleFree(stmt#2, 4)";

// How the describe's calls end an operation that then says `message`: the OCI calls nBefore + 1 to
// nBefore + 16.
inline std::vector<FailingCalls> DescribeFailures(const std::string& message) {
  const Events told = {"HandleErrorMsg(\"" + message + "\")"};
  const Events failed = {"returned 0"};
  return {
      {"DescribeHandle", 1, 1,
       Together({{"HandleErrorMsg(\"Unable allocate statement handle!\")"}, told, failed}), 1},
      {"DescribePrepare", 2, 2,
       Together(
           {Reported(kHighStatus, "Unable Prepare statement while Initialize."), {kFreeTable}, told, failed}),
       1},
      {"Describe", 3, 3,
       Together(
           {Reported(kHighStatus, "Unable Describe table while Initialize!"), {kFreeTable}, told, failed}),
       1},
      {"Columns", 4, 16, Together({Reported(-1, "Unable to initialize columns"), told, {kFreeTable}, failed}),
       1},
      {"LoaderHandle", 17, 17,
       Together(
           {Reported(kHighStatus, "Unable create statement handle for TableLoader!"), {kFreeTable}, failed}),
       1},
      {"Bind", 18, 22, {kFreeLoader, kFreeTable, "returned 0"}, 1}};
}

}  // namespace scripted
