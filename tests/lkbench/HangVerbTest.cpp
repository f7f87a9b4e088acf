// SPDX-License-Identifier: Apache-2.0
// A server that is stopped while a verb waits for it, and answers nobody. What the verb waits for first is a
// lock that the test holds, so that it is in that very call when the server stops.
#include <csignal>
#include <thread>

#include "RunTest.h"

namespace {

using testing::HasSubstr;
using Words = std::vector<std::string>;

struct Hang {
  std::string name;
  std::string lock;
  Words verb;
  std::string who;
  std::string doing;
};

void PrintTo(const Hang& hang, std::ostream* out) { *out << hang.name; }

class HangVerb : public RunTest, public testing::WithParamInterface<Hang> {
 protected:
  ~HangVerb() override { kill(m_server.ServerPid(), SIGCONT); }

  void SetUp() override {
    Do({"create", "--tables", "2", "--schema-seed", "3"});
    Do({"load", "--scale", "0.1"});
  }
  Words Verb(const Words& flags) const {
    Words words = GetParam().verb;
    words.insert(words.end(), flags.begin(), flags.end());
    return Arguments(words);
  }
  // Starts it and stops the server once it waits for the lock.
  Program& Hung(const Words& flags) {
    m_sql.Run(GetParam().lock);
    m_program.emplace(Verb(flags));
    EXPECT_TRUE(m_program->WaitFor([&] { return IsWaitingForLock(); }));
    kill(m_server.ServerPid(), SIGSTOP);
    return *m_program;
  }
  std::string Given() const {
    return GetParam().verb.front() + ": " + GetParam().who + " has been " + GetParam().doing;
  }

  std::optional<Program> m_program;
};

TEST_P(HangVerb, OneSignalIsEnough) {
  Program& program = Hung({"--break-after", "300ms", "--give-up-after", "300ms"});
  program.Signal(SIGTERM);
  const Outcome outcome = program.Wait();
  EXPECT_EQ(outcome.code, 143) << outcome.err;
  EXPECT_THAT(outcome.err, HasSubstr("lkbench: interrupted: " + Given()));
  EXPECT_THAT(outcome.err, HasSubstr("s, and the call does not come back: given up\n"));
}

TEST_P(HangVerb, ACallTimeoutEndsIt) {
  const Outcome outcome = Hung({"--call-timeout", "5s", "--give-up-after", "300ms"}).Wait();
  EXPECT_EQ(outcome.code, 5) << outcome.err;
  EXPECT_THAT(outcome.err, HasSubstr(" for longer than call_timeout (5s): the call is broken off\n"));
  EXPECT_THAT(outcome.err, HasSubstr("lkbench: " + Given()));
  EXPECT_THAT(outcome.err, HasSubstr("s, and the call does not come back: given up\n"));
}

TEST_P(HangVerb, ACallTimeoutBreaksACallOffThatADatabaseAtWorkLetsWait) {
  m_sql.Run(GetParam().lock);
  const Outcome outcome = RunProgram(Verb({"--call-timeout", "500ms"}));
  EXPECT_EQ(outcome.code, 5) << outcome.err;
  EXPECT_THAT(outcome.err, HasSubstr(" for longer than call_timeout (500ms): the call is broken off\n"));
  EXPECT_THAT(outcome.err, testing::Not(HasSubstr("given up")));
}

constexpr const char* kOwn = "lkbench's own session";
const Hang kHangs[] = {
    {"AStateThatIsRead", "LOCK TABLES LKBENCH_STATE WRITE", {"drop"}, kOwn, "executing SELECT STATE_NAME"},
    {"ACreate", "LOCK TABLES LKBENCH_STATE READ", {"create", "--first-table", "3"}, kOwn, "executing BEGIN"},
    {"ALoad",
     "LOCK TABLES LK_REP_TABLE1 READ",
     {"load", "--scale", "0.5", "--users", "1"},
     "user 1",
     "executing INSERT INTO LK_REP_TABLE1"},
    {"ARefresh",
     "LOCK TABLES LK_REP_TABLE1 READ",
     {"refresh", "--scale", "0.05", "--users", "1"},
     "user 1",
     "executing DELETE"},
    {"AWorkloadBeforeItsWork",
     "LOCK TABLES LKBENCH_STATE WRITE",
     {"workload"},
     kOwn,
     "executing SELECT STATE_NAME"},
    {"ADropOfTables", "LOCK TABLES LK_REP_TABLE1 READ", {"drop"}, kOwn, "executing DROP TABLE"}};

INSTANTIATE_TEST_SUITE_P(Verbs, HangVerb, testing::ValuesIn(kHangs),
                         [](const auto& each) { return each.param.name; });

}  // namespace
