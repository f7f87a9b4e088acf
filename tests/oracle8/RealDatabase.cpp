// SPDX-License-Identifier: Apache-2.0
#include "RealDatabase.h"

#include <stdexcept>

#include "TemporaryFolder.h"
#include "oracle8/OciStatement.h"

namespace real_database {
namespace {

LKString Wide(const std::string& text) { return LKString(text.c_str(), static_cast<int>(text.size())); }

struct Server {
  test_support::TemporaryFolder folder;
  localdb::LocalServer server{folder.Path() / "db"};
};

class Prepared {
 public:
  Prepared(COracle8Driver& driver, const std::string& sql) : m_driver(driver) {
    void* handle = nullptr;
    OCIHandleAlloc(driver.GetOCIEnvironment(), &handle, OCI_HTYPE_STMT, 0, nullptr);
    m_statement = static_cast<OCIStmt*>(handle);
    m_status = OCIStmtPrepare(m_statement, driver.GetOCIError(), reinterpret_cast<const OraText*>(sql.data()),
                              static_cast<ub4>(sql.size()), OCI_NTV_SYNTAX, OCI_DEFAULT);
  }
  ~Prepared() { OCIHandleFree(m_statement, OCI_HTYPE_STMT); }
  Prepared(const Prepared&) = delete;
  Prepared& operator=(const Prepared&) = delete;

  sword Execute(ub4 mode) {
    if (m_status != OCI_SUCCESS) return m_status;
    return OCIStmtExecute(m_driver.GetOCIServerContext(), m_statement, m_driver.GetOCIError(), 1, 0, nullptr,
                          nullptr, mode);
  }
  template <class T>
  T Attribute(const void* target, ub4 type, ub4 attribute) {
    T value{};
    OCIAttrGet(target, type, &value, nullptr, attribute, m_driver.GetOCIError());
    return value;
  }
  ub4 ColumnCount() { return Attribute<ub4>(m_statement, OCI_HTYPE_STMT, OCI_ATTR_PARAM_COUNT); }
  std::string Column(ub4 position);

 private:
  COracle8Driver& m_driver;
  OCIStmt* m_statement = nullptr;
  sword m_status = OCI_SUCCESS;
};

std::string Prepared::Column(ub4 position) {
  void* parameter = nullptr;
  OCIParamGet(m_statement, OCI_HTYPE_STMT, m_driver.GetOCIError(), &parameter, position);
  const char* name = nullptr;
  ub4 length = 0;
  OCIAttrGet(parameter, OCI_DTYPE_PARAM, &name, &length, OCI_ATTR_NAME, m_driver.GetOCIError());
  std::string text(name, length);
  text += " " + std::to_string(Attribute<ub2>(parameter, OCI_DTYPE_PARAM, OCI_ATTR_DATA_TYPE));
  text += " " + std::to_string(Attribute<ub2>(parameter, OCI_DTYPE_PARAM, OCI_ATTR_DATA_SIZE));
  text += " " + std::to_string(Attribute<sb2>(parameter, OCI_DTYPE_PARAM, OCI_ATTR_PRECISION));
  text += " " + std::to_string(Attribute<sb1>(parameter, OCI_DTYPE_PARAM, OCI_ATTR_SCALE));
  if (Attribute<ub1>(parameter, OCI_DTYPE_PARAM, OCI_ATTR_IS_NULL) == 0) text += " NOT NULL";
  OCIDescriptorFree(parameter, OCI_DTYPE_PARAM);
  return text;
}

}  // namespace

localdb::LocalServer& TheServer() {
  static Server server;
  return server.server;
}

int ConnectTo(COracle8Driver& driver) {
  const auto& server = TheServer();
  return driver.Connect(Wide(server.ConnectString()), Wide(server.User()), Wide(server.Password()));
}

int Execute(COracle8Driver& driver, const std::string& sql, ub4 mode) {
  const sword status = Prepared(driver, sql).Execute(mode);
  return status == OCI_SUCCESS ? 0 : static_cast<int>(oracle8::ReadError(status, driver.GetOCIError()).code);
}

std::vector<std::string> DescribeTable(COracle8Driver& driver, const std::string& table) {
  Prepared statement(driver, "SELECT * FROM " + table);
  if (statement.Execute(OCI_DESCRIBE_ONLY) != OCI_SUCCESS) return {"no table " + table};
  std::vector<std::string> columns;
  for (ub4 i = 1; i <= statement.ColumnCount(); ++i) columns.push_back(statement.Column(i));
  return columns;
}

std::vector<std::vector<std::string>> Rows(CDriverBase& driver, const std::string& query) {
  std::vector<std::vector<LKString>> read;
  EXPECT_EQ(driver.Query(Wide(query), read), 1);
  std::vector<std::vector<std::string>> rows;
  for (const auto& row : read) {
    rows.emplace_back();
    for (const LKString& cell : row) rows.back().push_back(cell.ToChar());
  }
  return rows;
}

RealDatabase::RealDatabase() {
  m_driver.AddHandler(&m_reports);
  if (ConnectTo(m_driver) == 0) throw std::runtime_error("no connection: " + m_reports.Reports().at(0));
}

void RealDatabase::Make(const std::string& table, const std::string& columns,
                        const std::vector<std::string>& then) {
  Execute(m_driver, "DROP TABLE " + table);
  Execute(m_driver, "DROP TABLE " + table + "_BAK");
  EXPECT_EQ(Execute(m_driver, "CREATE TABLE " + table + " (" + columns + ")"), 0);
  for (const std::string& sql : then) EXPECT_EQ(Execute(m_driver, sql), 0) << sql;
}

}  // namespace real_database
