// SPDX-License-Identifier: Apache-2.0
// A client for the contract tests: handles with lifetimes, and short ways to say what the tests say often.
// All through the exported calls.
#pragma once

#include <oci.h>

#include <string>
#include <string_view>
#include <vector>

namespace oci_test {

// The number and text that the error handle holds; 0 when it holds none.
struct Report {
  int code = 0;
  std::string text;
};
Report ReportOf(OCIError* error);

class Client {
 public:
  Client();  // environment and handles, not connected
  ~Client();
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  sword Attach(std::string_view connect_string);
  sword Begin(std::string_view user, std::string_view password);
  void Connect(std::string_view connect_string, std::string_view user, std::string_view password);  // throws
  sword End();

  sword Commit() { return OCITransCommit(service, error, OCI_DEFAULT); }
  sword Rollback() { return OCITransRollback(service, error, OCI_DEFAULT); }
  ub4 ServerStatus();

  Report LastReport() const { return ReportOf(error); }
  int Code() const { return LastReport().code; }

  OCIEnv* env = nullptr;
  OCIError* error = nullptr;
  OCIServer* server = nullptr;
  OCISvcCtx* service = nullptr;
  OCISession* session = nullptr;

 private:
  void* Alloc(ub4 type);
};

class Statement {
 public:
  explicit Statement(Client& client, std::string_view text = {});  // prepares a text that is not empty
  ~Statement();
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  sword Prepare(std::string_view text);
  sword Execute(ub4 iters = 1, ub4 mode = OCI_DEFAULT, ub4 rowoff = 0);
  sword Fetch(ub4 rows = 1) {
    return OCIStmtFetch2(handle, m_client.error, rows, OCI_FETCH_NEXT, 0, OCI_DEFAULT);
  }
  sword Bind(ub4 position, void* values, sb4 size, ub2 type, sb2* indicators = nullptr,
             ub2* lengths = nullptr);
  sword Define(ub4 position, void* values, sb4 size, ub2 type, sb2* indicators = nullptr,
               ub2* lengths = nullptr, ub2* codes = nullptr);

  template <class T>
  T Attribute(ub4 attribute) {
    T value{};
    OCIAttrGet(handle, OCI_HTYPE_STMT, &value, nullptr, attribute, m_client.error);
    return value;
  }
  ub4 RowCount() { return Attribute<ub4>(OCI_ATTR_ROW_COUNT); }

  OCIStmt* handle = nullptr;

 private:
  Client& m_client;
};

// Executes one text, with iterations 1 unless it is a query. Gives the status.
sword Exec(Client& client, std::string_view text, ub4 mode = OCI_DEFAULT);

// The same, and throws with the error's text when it fails.
void MustExec(Client& client, std::string_view text, ub4 mode = OCI_DEFAULT);

// All rows of a query as text; NULL is "(null)".
std::vector<std::vector<std::string>> Rows(Client& client, std::string_view query);
std::string Value(Client& client, std::string_view query);  // the one value of the one row

}  // namespace oci_test
