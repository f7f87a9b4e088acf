// SPDX-License-Identifier: Apache-2.0
// The rows that an array execute with OCI_BATCH_ERRORS left on the client's error handle.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "Client.h"

namespace oci_test {

struct FailedRow {
  ub4 row;  // element of the array, from 0
  int code;
  bool operator==(const FailedRow&) const = default;
};

// In the order in which they are told. Reads them through a handle of the caller's own.
inline std::vector<FailedRow> FailedRows(Client& client, Statement& statement) {
  std::vector<FailedRow> failed;
  OCIError* own = nullptr;
  OCIHandleAlloc(client.env, reinterpret_cast<void**>(&own), OCI_HTYPE_ERROR, 0, nullptr);
  const ub4 count = statement.Attribute<ub4>(OCI_ATTR_NUM_DML_ERRORS);
  for (ub4 i = 0; i < count; ++i) {
    void* row = own;  // a handle that the caller brings is filled
    EXPECT_EQ(OCIParamGet(client.error, OCI_HTYPE_ERROR, client.error, &row, i), OCI_SUCCESS);
    EXPECT_EQ(row, own);
    ub4 offset = 99;
    EXPECT_EQ(OCIAttrGet(row, OCI_HTYPE_ERROR, &offset, nullptr, OCI_ATTR_DML_ROW_OFFSET, client.error),
              OCI_SUCCESS);
    failed.push_back({offset, ReportOf(own).code});
  }
  OCIHandleFree(own, OCI_HTYPE_ERROR);
  return failed;
}

}  // namespace oci_test
