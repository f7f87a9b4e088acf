// SPDX-License-Identifier: Apache-2.0
#include "Client.h"

#include <stdexcept>

namespace oci_test {
namespace {

const OraText* Text(std::string_view text) { return reinterpret_cast<const OraText*>(text.data()); }

bool IsQuery(Statement& statement) { return statement.Attribute<ub2>(OCI_ATTR_STMT_TYPE) == OCI_STMT_SELECT; }

}  // namespace

Report ReportOf(OCIError* error) {
  Report report;
  OraText text[3000];
  if (OCIErrorGet(error, 1, nullptr, &report.code, text, sizeof text, OCI_HTYPE_ERROR) == OCI_SUCCESS)
    report.text = reinterpret_cast<const char*>(text);
  return report;
}

Client::Client() {
  if (OCIEnvCreate(&env, OCI_THREADED, nullptr, nullptr, nullptr, nullptr, 0, nullptr) != OCI_SUCCESS)
    throw std::runtime_error("no environment");
  error = static_cast<OCIError*>(Alloc(OCI_HTYPE_ERROR));
  server = static_cast<OCIServer*>(Alloc(OCI_HTYPE_SERVER));
  service = static_cast<OCISvcCtx*>(Alloc(OCI_HTYPE_SVCCTX));
  session = static_cast<OCISession*>(Alloc(OCI_HTYPE_SESSION));
}

Client::~Client() {
  OCITransRollback(service, error, OCI_DEFAULT);
  OCISessionEnd(service, error, session, OCI_DEFAULT);
  OCIHandleFree(env, OCI_HTYPE_ENV);
}

void* Client::Alloc(ub4 type) {
  void* handle = nullptr;
  if (OCIHandleAlloc(env, &handle, type, 0, nullptr) != OCI_SUCCESS) throw std::runtime_error("no handle");
  return handle;
}

sword Client::Attach(std::string_view connect_string) {
  return OCIServerAttach(server, error, Text(connect_string), static_cast<sb4>(connect_string.size()),
                         OCI_DEFAULT);
}

sword Client::Begin(std::string_view user, std::string_view password) {
  OCIAttrSet(service, OCI_HTYPE_SVCCTX, server, 0, OCI_ATTR_SERVER, error);
  OCIAttrSet(session, OCI_HTYPE_SESSION, const_cast<char*>(user.data()), static_cast<ub4>(user.size()),
             OCI_ATTR_USERNAME, error);
  OCIAttrSet(session, OCI_HTYPE_SESSION, const_cast<char*>(password.data()),
             static_cast<ub4>(password.size()), OCI_ATTR_PASSWORD, error);
  const sword status = OCISessionBegin(service, error, session, OCI_CRED_RDBMS, OCI_DEFAULT);
  if (status == OCI_SUCCESS) OCIAttrSet(service, OCI_HTYPE_SVCCTX, session, 0, OCI_ATTR_SESSION, error);
  return status;
}

void Client::Connect(std::string_view connect_string, std::string_view user, std::string_view password) {
  if (Attach(connect_string) != OCI_SUCCESS || Begin(user, password) != OCI_SUCCESS)
    throw std::runtime_error(LastReport().text);
}

sword Client::End() { return OCISessionEnd(service, error, session, OCI_DEFAULT); }

ub4 Client::ServerStatus() {
  ub4 status = 99;
  OCIAttrGet(server, OCI_HTYPE_SERVER, &status, nullptr, OCI_ATTR_SERVER_STATUS, error);
  return status;
}

Statement::Statement(Client& client, std::string_view text) : m_client(client) {
  void* allocated = nullptr;
  if (OCIHandleAlloc(client.env, &allocated, OCI_HTYPE_STMT, 0, nullptr) != OCI_SUCCESS)
    throw std::runtime_error("no statement handle");
  handle = static_cast<OCIStmt*>(allocated);
  if (!text.empty() && Prepare(text) != OCI_SUCCESS) throw std::runtime_error(client.LastReport().text);
}

Statement::~Statement() { OCIHandleFree(handle, OCI_HTYPE_STMT); }

sword Statement::Prepare(std::string_view text) {
  return OCIStmtPrepare(handle, m_client.error, Text(text), static_cast<ub4>(text.size()), OCI_NTV_SYNTAX,
                        OCI_DEFAULT);
}

sword Statement::Execute(ub4 iters, ub4 mode, ub4 rowoff) {
  return OCIStmtExecute(m_client.service, handle, m_client.error, iters, rowoff, nullptr, nullptr, mode);
}

sword Statement::Bind(ub4 position, void* values, sb4 size, ub2 type, sb2* indicators, ub2* lengths) {
  OCIBind* bind = nullptr;
  return OCIBindByPos(handle, &bind, m_client.error, position, values, size, type, indicators, lengths,
                      nullptr, 0, nullptr, OCI_DEFAULT);
}

sword Statement::Define(ub4 position, void* values, sb4 size, ub2 type, sb2* indicators, ub2* lengths,
                        ub2* codes) {
  OCIDefine* define = nullptr;
  return OCIDefineByPos(handle, &define, m_client.error, position, values, size, type, indicators, lengths,
                        codes, OCI_DEFAULT);
}

sword Exec(Client& client, std::string_view text, ub4 mode) {
  Statement statement(client);
  const sword prepared = statement.Prepare(text);
  if (prepared != OCI_SUCCESS) return prepared;
  return statement.Execute(IsQuery(statement) ? 0 : 1, mode);
}

void MustExec(Client& client, std::string_view text, ub4 mode) {
  if (Exec(client, text, mode) != OCI_SUCCESS)
    throw std::runtime_error(std::string(text) + ": " + client.LastReport().text);
}

std::vector<std::vector<std::string>> Rows(Client& client, std::string_view query) {
  constexpr std::size_t kWidth = 4001;
  Statement statement(client, query);
  if (statement.Execute(0) != OCI_SUCCESS) throw std::runtime_error(client.LastReport().text);
  const ub4 columns = statement.Attribute<ub4>(OCI_ATTR_PARAM_COUNT);
  std::vector<std::vector<char>> values(columns, std::vector<char>(kWidth));
  std::vector<sb2> indicators(columns);
  for (ub4 i = 0; i < columns; ++i)
    statement.Define(i + 1, values[i].data(), kWidth, SQLT_STR, &indicators[i]);
  std::vector<std::vector<std::string>> rows;
  while (statement.Fetch() != OCI_NO_DATA) {
    auto& row = rows.emplace_back();
    for (ub4 i = 0; i < columns; ++i)
      row.push_back(indicators[i] == OCI_IND_NULL ? "(null)" : values[i].data());
    if (rows.size() > 100000) throw std::runtime_error("the fetch does not end");
  }
  return rows;
}

std::string Value(Client& client, std::string_view query) {
  const auto rows = Rows(client, query);
  if (rows.size() != 1 || rows[0].size() != 1)
    throw std::runtime_error("not one value: " + std::string(query));
  return rows[0][0];
}

}  // namespace oci_test
