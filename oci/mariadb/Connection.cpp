// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Connection.h"

#include <errmsg.h>
#include <mysqld_error.h>

#include "oci/mariadb/KeptStatements.h"
#include "oci/mariadb/LeanLink.h"
#include "oci/mariadb/Library.h"
#include "oci/mariadb/LinkWatch.h"
#include "oci/mariadb/ServerFailure.h"
#include "oci/mariadb/TraceEvents.h"
#include "oci/mariadb/sql/SessionSettings.h"

namespace ocimaria {
namespace {

// One statement, one round trip. A row lock is waited for as long as in Oracle, where there is no limit (an
// interrupt ends the wait); a metadata lock for ten seconds, because a DDL that has to wait fails at once
// there.
constexpr char kTransactionSettings[] =
    ", tx_isolation='READ-COMMITTED', autocommit=0, lock_wait_timeout=10, innodb_lock_wait_timeout=1000000";

constexpr unsigned kControlTimeout = 5;  // seconds: an interrupted call waits for its kill to be answered

const char* OrNull(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

void FreeResult(MYSQL* mysql) {
  do {
    if (MYSQL_RES* result = mysql_use_result(mysql)) mysql_free_result(result);
  } while (mysql_next_result(mysql) == 0);
}

}  // namespace

Connection::Connection(ConnectTarget target, Credentials credentials, Purpose purpose)
    : m_target(std::move(target)),
      m_server_name(m_target.ServerName()),
      m_credentials(std::move(credentials)),
      m_mysql(nullptr),
      m_kept(std::make_unique<KeptStatements>()) {
  UseClientLibrary();
  m_mysql = mysql_init(nullptr);
  if (!m_mysql) throw std::bad_alloc();
  try {
    SetOptions(purpose);
    Open(purpose);
  } catch (const ServerFailure& failure) {
    Close();
    sql::ErrorContext context;
    context.connecting = true;
    context.schema = m_target.schema;
    throw ToOraError(failure, context);
  } catch (...) {
    Close();
    throw;
  }
}

Connection::~Connection() { Close(); }

void Connection::SetOptions(Purpose purpose) {
  const unsigned protocol = m_target.host.empty() ? MYSQL_PROTOCOL_SOCKET : MYSQL_PROTOCOL_TCP;
  mysql_options(m_mysql, MYSQL_OPT_PROTOCOL, &protocol);
  LimitLogIn(m_mysql, m_target.connect_timeout);
  mysql_options(m_mysql, MYSQL_SET_CHARSET_NAME, "utf8mb4");
  if (purpose == Purpose::kControl) mysql_options(m_mysql, MYSQL_OPT_READ_TIMEOUT, &kControlTimeout);
  const unsigned no_local_files = 0;
  mysql_options(m_mysql, MYSQL_OPT_LOCAL_INFILE, &no_local_files);
  if (!m_target.tls_required) return;
  const my_bool enforce = 1, verify = m_target.verify_certificate ? 1 : 0;
  mysql_options(m_mysql, MYSQL_OPT_SSL_ENFORCE, &enforce);
  mysql_options(m_mysql, MYSQL_OPT_SSL_VERIFY_SERVER_CERT, &verify);
  // Connector/C checks a certificate wherever it is given an authority, wanted or not.
  if (m_target.verify_certificate) mysql_options(m_mysql, MYSQL_OPT_SSL_CA, OrNull(m_target.ssl_ca));
  mysql_options(m_mysql, MYSQL_OPT_SSL_CERT, OrNull(m_target.ssl_cert));
  mysql_options(m_mysql, MYSQL_OPT_SSL_KEY, OrNull(m_target.ssl_key));
}

void Connection::LogIn() {
  const trace::RoundTrip trip(0, "log-in");
  if (!mysql_real_connect(m_mysql, OrNull(m_target.host), m_credentials.user.c_str(),
                          m_credentials.password.c_str(), m_target.schema.c_str(), m_target.port,
                          OrNull(m_target.socket), CLIENT_FOUND_ROWS | CLIENT_MULTI_RESULTS))
    Fail();
}

void Connection::Open(Purpose purpose) {
  LogIn();
  // The client library goes on in plain text when the server offers no TLS, even where it is enforced.
  if (m_target.tls_required && !mysql_get_ssl_cipher(m_mysql))
    throw OraError::WithText(29024, "Certificate validation failure (" + m_server_name +
                                        " offers no TLS and a connection in plain text is refused)");
  m_id = mysql_thread_id(m_mysql);
  TraceOpened(purpose);
  if (purpose == Purpose::kSession) {
    Run(std::string("SET ") + sql::kSessionSettings + kTransactionSettings);
    WatchLink(m_mysql, m_target.link_timeout);
    m_link = std::make_unique<LeanLink>(m_mysql);
  }
  m_established = true;
}

void Connection::TraceOpened(Purpose purpose) {
  if (!trace::Active()) return;
  const char* cipher = mysql_get_ssl_cipher(m_mysql);
  trace::UseConnection(m_id);
  trace::ConnectionEvent(m_id, purpose == Purpose::kSession ? "connected" : "connected for interrupts",
                         "to " + m_server_name);
  trace::Setting(m_id, "server=" + m_server_name + " version=" + ServerVersion() +
                           " schema=" + m_target.schema + " user=" + m_credentials.user + " tls=" +
                           (cipher ? cipher : "off") + " charset=" + mysql_character_set_name(m_mysql) +
                           " connect-timeout=" + std::to_string(m_target.connect_timeout));
}

MYSQL* Connection::Native() {
  if (m_lost || !m_mysql) throw OraError(3114);
  return m_mysql;
}

void Connection::Throw(unsigned number, const char* text) {
  ServerFailure failure(number, text);
  if (m_established && failure.BrokenLink()) failure = ServerFailure(CR_SERVER_LOST, text);
  if (failure.LostConnection()) {
    m_lost = true;
    trace::ConnectionEvent(m_id, "lost", "by server error " + std::to_string(number));
  }
  throw failure;
}

void Connection::RequireRoomFor(std::size_t bytes) {
  constexpr std::size_t kAlwaysFits =
      std::size_t{8} * 1024 * 1024;  // half of the smallest limit that servers come with
  constexpr std::size_t kHeader = 64;
  if (bytes <= kAlwaysFits) return;
  if (m_packet_limit == 0) m_packet_limit = std::stoul(Read("SELECT @@max_allowed_packet").at(0).at(0));
  if (bytes + kHeader < m_packet_limit) return;
  throw ServerFailure(ER_NET_PACKET_TOO_LARGE, "a statement or row of " + std::to_string(bytes) +
                                                   " bytes is more than the server's max_allowed_packet of " +
                                                   std::to_string(m_packet_limit) + " lets through");
}

void Connection::Send(std::string_view text) {
  RequireRoomFor(text.size());
  const trace::RoundTrip trip(m_id, "query", text);
  if (mysql_real_query(Native(), text.data(), text.size()) != 0) Fail();
}

std::uint64_t Connection::Run(std::string_view text) {
  Send(text);
  const std::uint64_t matched = mysql_field_count(m_mysql) == 0 ? mysql_affected_rows(m_mysql) : 0;
  FreeResult(m_mysql);
  if (mysql_errno(m_mysql) != 0) Fail();
  if (!InTransaction()) m_uncommitted = false;
  return matched;
}

std::vector<std::vector<std::string>> Connection::Read(std::string_view text) {
  Send(text);
  const std::unique_ptr<MYSQL_RES, decltype(&mysql_free_result)> result(mysql_store_result(m_mysql),
                                                                        mysql_free_result);
  if (!result) Fail();
  std::vector<std::vector<std::string>> rows;
  while (MYSQL_ROW row = mysql_fetch_row(result.get())) {
    const unsigned long* lengths = mysql_fetch_lengths(result.get());
    auto& values = rows.emplace_back();
    for (unsigned i = 0; i < mysql_num_fields(result.get()); ++i)
      values.emplace_back(row[i] ? row[i] : "", row[i] ? lengths[i] : 0);
  }
  return rows;
}

void Connection::Commit() {
  Run("COMMIT");
  m_uncommitted = false;
}

void Connection::CommitIfOpen() {
  if (m_uncommitted || InTransaction()) Commit();
}

void Connection::Rollback() {
  Run("ROLLBACK");
  m_uncommitted = false;
}

void Connection::Ping() {
  const trace::RoundTrip trip(m_id, "ping");
  if (mysql_ping(Native()) != 0) Fail();
}

void Connection::ReleaseReadLocks() {
  Native();
  if (!m_uncommitted && InTransaction()) Run("COMMIT");
}

void Connection::ReleaseReadLocksAfterFailure() {
  if (!m_uncommitted && !m_lost) Run("ROLLBACK");
}

std::string Connection::Literal(std::string_view text) {
  std::string escaped(text.size() * 2 + 1, '\0');
  escaped.resize(mysql_real_escape_string(Native(), escaped.data(), text.data(), text.size()));
  return "'" + escaped + "'";
}

std::string Connection::ServerVersion() { return mysql_get_server_info(Native()); }

void Connection::CloseStatement(MYSQL_STMT* statement) {
  if (m_link)
    m_link->Close(statement);
  else
    mysql_stmt_close(statement);
}

void Connection::Close() {
  if (m_mysql && m_id != 0) trace::ConnectionEvent(m_id, "closed");
  if (m_mysql) mysql_close(m_mysql);  // the server forgets its statements with the connection
  m_mysql = nullptr;
  m_kept->Clear();
  m_lost = false;
}

}  // namespace ocimaria
