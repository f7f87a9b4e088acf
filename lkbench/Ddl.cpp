// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Ddl.h"

#include "lkbench/Layers.h"
#include "lkbench/Precondition.h"
#include "lkbench/Text.h"
#include "oci/record/Record.h"

namespace lkbench {
namespace {

void Take(void* statements, const char* text, size_t size) {
  static_cast<std::vector<std::string>*>(statements)->emplace_back(text, size);
}

// Takes statements down while it lives.
class Recording {
 public:
  Recording(const Layers& layers, std::vector<std::string>& statements)
      : m_record(reinterpret_cast<decltype(&LkRecordStatements)>(layers.Oci().Symbol("LkRecordStatements"))) {
    m_record(&Take, &statements);
  }
  ~Recording() { m_record(nullptr, nullptr); }
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

 private:
  decltype(&LkRecordStatements) m_record;
};

}  // namespace

std::vector<std::string> CreationStatements(const Job& job, Console& console, ErrorLog& log) {
  CheckJob(job, kCreateVerb);
  const Layers layers(TargetKind::kMariaDb, {LibraryFolder() / "libocirecord.so", job.plugin});
  const std::unique_ptr<CSSBenchmark> benchmark = layers.NewBenchmark();
  CancelSwitch cancel;
  CallBreaker breaker;
  CallWatch calls(breaker);
  UserPool users([&] { return layers.NewDriver(); }, {"the recorder", "none", "none", ""}, log, calls);
  Bench bench{job, console, log, cancel, breaker, *benchmark, users, {}, {}, {}, {}, {}, false, {}};
  bench.Admin();
  std::vector<std::string> statements;
  const Recording recording(layers, statements);
  if (FirstTable(job) == 1)
    MakeObjects(bench, true);
  else  // what is there besides is changed, not created
    bench.RunObject(Role::kCreateTables, PropertiesOf(job));
  return statements;
}

std::string DdlScript(const std::vector<std::string>& statements) {
  std::string script;
  for (const std::string& statement : statements) {
    const bool is_block =
        Upper(statement.substr(0, 5)) == "BEGIN" || Upper(statement.substr(0, 7)) == "DECLARE";
    script += OneLine(statement) + (is_block ? "\n/\n" : ";\n");
  }
  if (!script.empty()) script.pop_back();  // the console ends the line
  return script;
}

}  // namespace lkbench
