// SPDX-License-Identifier: Apache-2.0
#include "Column.h"

#include <gtest/gtest.h>

#include <cstring>

namespace oci_test {
namespace {

// Reads one attribute of exactly sizeof(T) bytes and checks that the bytes behind it stay untouched.
template <class T>
int Attribute(Client& client, void* parameter, ub4 attribute) {
  unsigned char buffer[sizeof(T) + 4];
  std::memset(buffer, 0xA5, sizeof buffer);
  EXPECT_EQ(OCIAttrGet(parameter, OCI_DTYPE_PARAM, buffer, nullptr, attribute, client.error), OCI_SUCCESS);
  for (std::size_t i = sizeof(T); i < sizeof buffer; ++i)
    EXPECT_EQ(buffer[i], 0xA5) << "attribute " << attribute << " wrote more than " << sizeof(T) << " bytes";
  T value;
  std::memcpy(&value, buffer, sizeof value);
  return value;
}

}  // namespace

Column ColumnOf(Client& client, Statement& statement, ub4 position) {
  void* parameter = nullptr;
  EXPECT_EQ(OCIParamGet(statement.handle, OCI_HTYPE_STMT, client.error, &parameter, position), OCI_SUCCESS);
  Column column;
  char* name = nullptr;
  ub4 length = 0;
  OCIAttrGet(parameter, OCI_DTYPE_PARAM, &name, &length, OCI_ATTR_NAME, client.error);
  column.name.assign(name, length);
  column.type = Attribute<ub2>(client, parameter, OCI_ATTR_DATA_TYPE);
  column.size = Attribute<ub2>(client, parameter, OCI_ATTR_DATA_SIZE);
  column.precision = Attribute<sb2>(client, parameter, OCI_ATTR_PRECISION);
  column.scale = Attribute<sb1>(client, parameter, OCI_ATTR_SCALE);
  column.nullable = Attribute<ub1>(client, parameter, OCI_ATTR_IS_NULL);
  column.char_used = Attribute<ub1>(client, parameter, OCI_ATTR_CHAR_USED);
  column.char_size = Attribute<ub2>(client, parameter, OCI_ATTR_CHAR_SIZE);
  column.form = Attribute<ub1>(client, parameter, OCI_ATTR_CHARSET_FORM);
  column.fsprecision = Attribute<ub1>(client, parameter, OCI_ATTR_FSPRECISION);
  column.lfprecision = Attribute<ub1>(client, parameter, OCI_ATTR_LFPRECISION);
  EXPECT_EQ(OCIDescriptorFree(parameter, OCI_DTYPE_PARAM), OCI_SUCCESS);
  return column;
}

std::vector<Column> DescribeQuery(Client& client, std::string_view query) {
  Statement statement(client, query);
  EXPECT_EQ(statement.Execute(0, OCI_DESCRIBE_ONLY), OCI_SUCCESS) << client.LastReport().text;
  std::vector<Column> columns;
  for (ub4 i = 1; i <= statement.Attribute<ub4>(OCI_ATTR_PARAM_COUNT); ++i)
    columns.push_back(ColumnOf(client, statement, i));
  return columns;
}

}  // namespace oci_test
