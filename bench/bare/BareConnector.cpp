// SPDX-License-Identifier: Apache-2.0
// bare_connector insert|update|delete SOCKET USER SCHEMA ROWS SECONDS TABLE...
// The workload's transactions by one user, made of the server's own client library: the statements as the OCI
// library hands them to the server, prepared and executed as it does, with values made beforehand. ROWS is
// the number of rows that updates and deletes draw from.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "bench/bare/Timed.h"
#include "bench/bare/WorkloadTexts.h"
#include "oci/mariadb/sql/SessionSettings.h"

namespace bare {
namespace {

void Check(int status, MYSQL_STMT* statement) {
  if (status == 0) return;
  std::cerr << mysql_stmt_error(statement) << "\n";
  std::_Exit(1);
}

MYSQL_TIME TimeOf(const std::string& text) {
  MYSQL_TIME time{};
  std::sscanf(text.c_str(), "%u-%u-%u %u:%u:%u", &time.year, &time.month, &time.day, &time.hour, &time.minute,
              &time.second);
  time.time_type = MYSQL_TIMESTAMP_DATETIME;
  return time;
}

// A prepared insert with the binds of one row.
class Insert {
 public:
  Insert(Session& session, const WorkloadTexts& texts)
      : m_texts(texts),
        m_statement(mysql_stmt_init(session.Native())),
        m_binds(texts.Columns().size()),
        m_values(m_binds.size()) {
    const std::string text = texts.ServerInsert();
    Check(mysql_stmt_prepare(m_statement, text.data(), text.size()), m_statement);
  }
  ~Insert() { mysql_stmt_close(m_statement); }
  Insert(const Insert&) = delete;
  Insert& operator=(const Insert&) = delete;

  void Run(double id, size_t row) {
    for (size_t i = 0; i < m_binds.size(); ++i) Bind(i, m_texts.Row(row)[i]);
    m_values[0].number = id;
    Check(mysql_stmt_bind_param(m_statement, m_binds.data()), m_statement);
    Check(mysql_stmt_execute(m_statement), m_statement);
  }

 private:
  struct Bound {
    double number;
    MYSQL_TIME time;
    my_bool is_null;
  };
  void Bind(size_t i, const Value& value) {
    MYSQL_BIND& bind = m_binds[i] = {};
    Bound& bound = m_values[i];
    bound.is_null = value.is_null ? 1 : 0;
    bind.is_null = &bound.is_null;
    switch (m_texts.Columns()[i].kind) {
      case Kind::kNumber:
        bound.number = value.number;
        bind.buffer_type = MYSQL_TYPE_DOUBLE;
        bind.buffer = &bound.number;
        break;
      case Kind::kDate:
        if (!value.is_null) bound.time = TimeOf(value.text);
        bind.buffer_type = MYSQL_TYPE_DATETIME;
        bind.buffer = &bound.time;
        break;
      case Kind::kText:
        bind.buffer_type = MYSQL_TYPE_STRING;
        bind.buffer = const_cast<char*>(value.text.data());
        bind.buffer_length = value.text.size();
        break;
    }
  }

  const WorkloadTexts& m_texts;
  MYSQL_STMT* m_statement;
  std::vector<MYSQL_BIND> m_binds;
  std::vector<Bound> m_values;
};

// The sequence query, prepared once.
class NextId {
 public:
  explicit NextId(Session& session) : m_statement(mysql_stmt_init(session.Native())) {
    Check(mysql_stmt_prepare(m_statement, kNextId, std::strlen(kNextId)), m_statement);
    m_bind.buffer_type = MYSQL_TYPE_LONGLONG;
    m_bind.buffer = &m_id;
  }
  ~NextId() { mysql_stmt_close(m_statement); }
  NextId(const NextId&) = delete;
  NextId& operator=(const NextId&) = delete;

  double Draw() {
    Check(mysql_stmt_execute(m_statement), m_statement);
    Check(mysql_stmt_store_result(m_statement), m_statement);
    Check(mysql_stmt_bind_result(m_statement, &m_bind), m_statement);
    Check(mysql_stmt_fetch(m_statement), m_statement);
    mysql_stmt_free_result(m_statement);
    return static_cast<double>(m_id);
  }

 private:
  MYSQL_STMT* m_statement;
  MYSQL_BIND m_bind{};
  long long m_id = 0;
};

void Describe(Session& session, const WorkloadTexts& texts) {
  const std::string text = texts.Describe();
  MYSQL_STMT* statement = mysql_stmt_init(session.Native());
  Check(mysql_stmt_prepare(statement, text.data(), text.size()), statement);
  mysql_stmt_close(statement);
}

class Transactions {
 public:
  Transactions(Session& session, size_t rows, const std::vector<std::string>& tables)
      : m_session(session), m_draw(tables.size(), rows), m_next_id(session) {
    for (const std::string& table : tables)
      m_tables.push_back(std::make_unique<WorkloadTexts>(session, table));
    for (const auto& table : m_tables) m_inserts.push_back(std::make_unique<Insert>(session, *table));
  }

  void InsertRow() {
    const size_t table = m_draw.Table();
    Describe(m_session, *m_tables[table]);
    m_inserts[table]->Run(m_next_id.Draw(), m_draw.Row());
    m_session.Run("COMMIT");
  }
  void UpdateRow() {
    const WorkloadTexts& texts = *m_tables[m_draw.Table()];
    Describe(m_session, texts);
    m_session.Run(texts.ServerUpdate(m_draw.Row()));
    m_session.Run("COMMIT");
  }
  void DeleteRow() {
    m_session.Run(m_tables[m_draw.Table()]->Delete(m_draw.Row()));
    m_session.Run("COMMIT");
  }

 private:
  Session& m_session;
  Draw m_draw;
  NextId m_next_id;
  std::vector<std::unique_ptr<WorkloadTexts>> m_tables;
  std::vector<std::unique_ptr<Insert>> m_inserts;
};

}  // namespace
}  // namespace bare

int main(int argc, char** argv) {
  if (argc < 8) {
    std::cerr << "usage: bare_connector insert|update|delete SOCKET USER SCHEMA ROWS SECONDS TABLE...\n";
    return 1;
  }
  const std::string kind = argv[1];
  bare::Session session(argv[2], argv[3], argv[4]);
  session.Run(std::string("SET ") + ocimaria::sql::kSessionSettings);
  bare::Transactions transactions(session, std::stoul(argv[5]), {argv + 7, argv + argc});
  const double seconds = std::stod(argv[6]);
  if (kind == "insert") bare::RepeatFor(seconds, [&] { transactions.InsertRow(); });
  if (kind == "update") bare::RepeatFor(seconds, [&] { transactions.UpdateRow(); });
  if (kind == "delete") bare::RepeatFor(seconds, [&] { transactions.DeleteRow(); });
}
