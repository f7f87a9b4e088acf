// SPDX-License-Identifier: Apache-2.0
// A server that is stopped in the middle of a workload and answers nobody.
#include <csignal>

#include "RunTest.h"

namespace {

using testing::HasSubstr;

class HangRun : public RunTest {
 protected:
  ~HangRun() override { kill(m_server.ServerPid(), SIGCONT); }

  // A workload without a duration, once its users are at work and the server is stopped.
  void StopUnder(Program& workload) {
    EXPECT_TRUE(workload.WaitFor([&] { return workload.OutSoFar().find("tx/s") != std::string::npos; }));
    kill(m_server.ServerPid(), SIGSTOP);
  }
  std::vector<std::string> Workload(const std::vector<std::string>& flags) {
    Do({"create", "--tables", "1"});
    Do({"load"});
    std::vector<std::string> arguments = {"workload", "--count", "1000000000", "--give-up-after", "300ms"};
    arguments.insert(arguments.end(), flags.begin(), flags.end());
    return Arguments(arguments);
  }
};

TEST_F(HangRun, ACallTimeoutEndsAPhaseThatOnlyItsCountWouldEnd) {
  Program workload(Workload({"--call-timeout", "300ms"}));
  StopUnder(workload);
  const Outcome outcome = workload.Wait();
  EXPECT_EQ(outcome.code, 2) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("2 users of 2 had a call that never came back and were given up"));
  EXPECT_THAT(outcome.out, HasSubstr("\nresults  "));
}

TEST_F(HangRun, ARunLeavesTheRefreshOut) {
  Program run(Arguments({"run", "--tables", "1", "--scale", "0.1", "--count", "1000000000", "--call-timeout",
                         "300ms", "--give-up-after", "300ms"}));
  StopUnder(run);
  const Outcome outcome = run.Wait();
  EXPECT_EQ(outcome.code, 2) << outcome.err;
  EXPECT_THAT(
      outcome.err,
      HasSubstr(
          "lkbench: the database does not answer: the refresh is left out, run `lkbench refresh` later\n"));
}

TEST_F(HangRun, ARefreshThatHangsLeavesTheResultsOfTheWorkload) {
  Program run(Arguments({"run", "--tables", "1", "--scale", "0.1", "--duration", "2s", "--call-timeout", "5s",
                         "--give-up-after", "300ms"}));
  EXPECT_TRUE(run.WaitFor([&] { return run.OutSoFar().find("tx/s") != std::string::npos; }));
  m_sql.Run("LOCK TABLES LKBENCH_STATE WRITE");
  EXPECT_TRUE(run.WaitFor([&] { return IsWaitingForLock(); }));
  kill(m_server.ServerPid(), SIGSTOP);
  const Outcome outcome = run.Wait();
  EXPECT_EQ(outcome.code, 2) << outcome.err;
  EXPECT_THAT(outcome.err, HasSubstr("lkbench: run: lkbench's own session has been executing SELECT STATE"));
  EXPECT_THAT(outcome.out, HasSubstr("\nresults  "));
  EXPECT_TRUE(exists(m_folder.Path() / "results1" / "run.json"));
}

TEST_F(HangRun, OneSignalIsEnough) {
  Program workload(Workload({"--break-after", "300ms"}));
  StopUnder(workload);
  // A second without an execution: both users are in a call.
  EXPECT_TRUE(workload.WaitFor([&] { return workload.OutSoFar().find(" 0.0 tx/s") != std::string::npos; }));
  workload.Signal(SIGINT);
  const Outcome outcome = workload.Wait();
  EXPECT_EQ(outcome.code, 130) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("2 users of 2 had a call that never came back and were given up"));
}

}  // namespace
