// SPDX-License-Identifier: Apache-2.0
// bare_load bulk|infile SOCKET USER SCHEMA FOLDER USERS ROWS-PER-COMMIT TABLE...
// Loads tables as fast as the database's own client can: rows that were made beforehand (FOLDER/TABLE.tsv,
// with \N for NULL) go by array binding and a commit after every batch, or as files by LOAD DATA LOCAL
// INFILE. User n of N takes the tables n, n + N, …. Reading the files is not part of the time. Prints "rows R
// seconds S".
#include <algorithm>
#include <atomic>
#include <barrier>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bench/bare/Rows.h"
#include "bench/bare/Session.h"
#include "bench/bare/Timed.h"

namespace bare {
namespace {

struct Work {
  std::string socket, user, schema, folder;
  size_t users = 1;
  size_t batch = 500;
  std::vector<std::string> tables;
};

std::string FileOf(const Work& work, const std::string& table) { return work.folder + "/" + table + ".tsv"; }

std::string InsertText(const std::string& table, size_t columns) {
  std::string text = "INSERT INTO " + table + " VALUES (?";
  while (--columns > 0) text += ",?";
  return text + ")";
}

// One table, whose rows are ready in memory.
class BulkLoad {
 public:
  BulkLoad(Session& session, const std::string& file, const std::string& table)
      : m_session(session),
        m_rows(session.ColumnTypes(table), file),
        m_insert(InsertText(table, m_rows.Columns())) {}

  size_t Run(size_t batch) {
    const Statement statement(m_session, m_insert);
    for (size_t first = 0; first < m_rows.Count(); first += batch) {
      const size_t count = std::min(batch, m_rows.Count() - first);
      statement.ExecuteArray(m_rows.Binds(first), static_cast<unsigned>(count));
      m_session.Run("COMMIT");
    }
    return m_rows.Count();
  }

 private:
  Session& m_session;
  Rows m_rows;
  std::string m_insert;
};

size_t LoadFile(Session& session, const std::string& file, const std::string& table) {
  const size_t rows = session.Run("LOAD DATA LOCAL INFILE '" + file + "' INTO TABLE " + table);
  session.Run("COMMIT");
  return rows;
}

using Clock = std::chrono::steady_clock;

// Users start together once all have their rows.
int Load(const Work& work, bool in_bulk) {
  std::atomic<size_t> rows = 0;
  Clock::time_point begin;
  double cpu_begin = 0;
  std::barrier ready(static_cast<std::ptrdiff_t>(work.users), [&]() noexcept {
    cpu_begin = CpuSeconds();
    begin = Clock::now();
  });
  const auto user = [&](size_t number) {
    Session session(work.socket, work.user, work.schema);
    std::vector<std::unique_ptr<BulkLoad>> loads;
    for (size_t i = number; in_bulk && i < work.tables.size(); i += work.users)
      loads.push_back(std::make_unique<BulkLoad>(session, FileOf(work, work.tables[i]), work.tables[i]));
    ready.arrive_and_wait();
    for (const auto& load : loads) rows += load->Run(work.batch);
    for (size_t i = number; !in_bulk && i < work.tables.size(); i += work.users)
      rows += LoadFile(session, FileOf(work, work.tables[i]), work.tables[i]);
  };
  {
    std::vector<std::jthread> threads;
    for (size_t number = 0; number < work.users; ++number) threads.emplace_back(user, number);
  }
  const std::chrono::duration<double> elapsed = Clock::now() - begin;
  std::printf("rows %zu seconds %.6f cpu %.6f\n", rows.load(), elapsed.count(), CpuSeconds() - cpu_begin);
  return 0;
}

}  // namespace
}  // namespace bare

int main(int argc, char** argv) {
  if (argc < 9) {
    std::cerr << "usage: bare_load bulk|infile SOCKET USER SCHEMA FOLDER USERS ROWS-PER-COMMIT TABLE...\n";
    return 1;
  }
  const bare::Work work{argv[2],
                        argv[3],
                        argv[4],
                        argv[5],
                        std::strtoul(argv[6], nullptr, 10),
                        std::strtoul(argv[7], nullptr, 10),
                        {argv + 8, argv + argc}};
  return bare::Load(work, std::string(argv[1]) == "bulk");
}
