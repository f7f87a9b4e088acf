// SPDX-License-Identifier: Apache-2.0
// One connection to the server, set up as an Oracle session expects it: SQL mode ORACLE and strict, utf8mb4
// with a collation that tells 'a', 'A' and 'a ' apart, read committed, no autocommit, rows matched rather
// than rows changed. All statements of a session run through here and through PreparedStatement.
//
// A call of the interface holds the connection by a CallScope; calls of several threads queue up. Members
// other than Calls(), Id() and Close() are for the holder of the scope.
//
// Round trips: constructor 1 for the log-in (2 with TLS) and 1 for the set-up, Run and Ping 1 each; once 1
// more before the first text or row of more than eight megabytes.
#pragma once

#include <mysql.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "oci/mariadb/CallState.h"
#include "oci/mariadb/ConnectString.h"
#include "oci/mariadb/TraceEvents.h"

namespace ocimaria {

class KeptStatements;
class LeanLink;

struct Credentials {
  std::string user;
  std::string password;
};

class Connection {
 public:
  enum class Purpose { kSession, kControl };  // a control connection gets no session set-up

  // Connects; throws OraError.
  Connection(ConnectTarget target, Credentials credentials, Purpose purpose);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Runs one text and drops its rows. Gives the number of rows it matched. Throws ServerFailure.
  std::uint64_t Run(std::string_view text);

  // Runs one text and gives its rows; NULL is an empty string.
  std::vector<std::vector<std::string>> Read(std::string_view text);

  // Throws ServerFailure when the server takes no packet of this size: sent all the same, it would cost the
  // session. Asks the server for its limit, once, where that may be too small.
  void RequireRoomFor(std::size_t bytes);

  void Commit();
  void CommitIfOpen();  // no round trip when the server has no transaction open, as after a DDL
  void Rollback();
  void Ping();

  // Work of the open transaction that a COMMIT or ROLLBACK must decide about. Reading alone is none.
  bool HasUncommittedWork() const { return m_uncommitted; }
  void NoteWork() { m_uncommitted = true; }

  // Ends a transaction that has only read, so that no metadata lock outlives the read.
  void ReleaseReadLocks();
  // The same after a read that failed: the server does not say then whether a transaction is open.
  void ReleaseReadLocksAfterFailure();

  // Text in quotes, fit to stand in a statement.
  std::string Literal(std::string_view text);

  MYSQL* Native();  // throws OraError 3114 when the connection is gone

  // Throws the failure that the client library reported. Once a session stands, every way in which the link
  // may break is the same loss, and the connection stays lost.
  [[noreturn]] void Throw(unsigned number, const char* text);
  bool Lost() const { return m_lost; }  // found gone, and not closed since
  void Close();

  KeptStatements& Kept() { return *m_kept; }
  void CloseStatement(MYSQL_STMT* statement);

  CallState& Calls() { return m_calls; }
  unsigned long Id() const { return m_id; }
  const ConnectTarget& Target() const { return m_target; }
  const std::string& ServerName() const { return m_server_name; }  // of the target, made once
  const Credentials& Account() const { return m_credentials; }
  std::string ServerVersion();

 private:
  friend class CallScope;
  void SetOptions(Purpose purpose);
  void Open(Purpose purpose);
  void LogIn();
  void TraceOpened(Purpose purpose);
  bool InTransaction() const { return (m_mysql->server_status & SERVER_STATUS_IN_TRANS) != 0; }
  void Send(std::string_view text);
  [[noreturn]] void Fail() { Throw(mysql_errno(m_mysql), mysql_error(m_mysql)); }

  const ConnectTarget m_target;
  const std::string m_server_name;
  const Credentials m_credentials;
  std::unique_ptr<LeanLink> m_link;  // of a session that stands
  MYSQL* m_mysql;
  unsigned long m_id = 0;
  bool m_established = false;
  bool m_uncommitted = false;
  std::size_t m_packet_limit = 0;   // 0: not known yet
  std::atomic<bool> m_lost{false};  // asked for by other handles too
  CallState m_calls;
  std::mutex m_use;
  const std::unique_ptr<KeptStatements> m_kept;
};

// One call on a connection: other threads' calls wait, an interrupt finds it.
class CallScope {
 public:
  explicit CallScope(Connection& connection) : m_connection(connection) {
    m_connection.m_use.lock();
    trace::UseConnection(m_connection.Id());
    m_connection.m_calls.BeginCall();
  }
  ~CallScope() {
    m_connection.m_calls.EndCall();
    m_connection.m_use.unlock();
  }
  CallScope(const CallScope&) = delete;
  CallScope& operator=(const CallScope&) = delete;

 private:
  Connection& m_connection;
};

}  // namespace ocimaria
