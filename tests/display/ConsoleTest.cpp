// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Console.h"

#include <gmock/gmock.h>

#include <sstream>

#include "Pty.h"
#include "lkbench/results/Json.h"

namespace lkbench {
namespace {

using testing::EndsWith;

FittedLine Line(const std::string& text) {
  return [=](std::size_t) { return Spans{{text}}; };
}

class ConsoleTest : public testing::Test {
 protected:
  const TerminalVariables m_variables;
  const Pty m_terminal{20};
};

TEST_F(ConsoleTest, ATerminalShowsTheStatusAndTheLogKeepsItsLine) {
  std::ostringstream log;
  Console console(m_terminal.File(), m_terminal.File());
  console.CopyTo(&log);
  console.Status("half of it", Line("half"));
  EXPECT_EQ(m_terminal.Read(), "\rhalf\x1b[J\r");
  EXPECT_THAT(log.str(), EndsWith("Z  half of it\n"));
}

TEST_F(ConsoleTest, WhereThereIsNoTerminalTheLineOfTheStatusIsPrinted) {
  const TerminalVariables dumb("dumb");
  Console console(m_terminal.File(), m_terminal.File());
  console.Status("half of it", Line("half"));
  console.Status(Line("half"));
  EXPECT_EQ(m_terminal.Read(), "half of it\n");
}

TEST_F(ConsoleTest, AtLevelWarningThereIsNoStatus) {
  Console console(m_terminal.File(), m_terminal.File());
  console.SetLevel(LogLevel::kWarning);
  console.Status("half of it", Line("half"));
  console.Status(Line("half"));
  console.Progress("line", Line("line"));
  EXPECT_EQ(m_terminal.Read(), "");
}

TEST_F(ConsoleTest, ProblemsAndStatementsGoIntoTheLinesOfTheWindow) {
  std::ostringstream log;
  Console console(m_terminal.File(), m_terminal.File());
  console.CopyTo(&log);
  console.Problem("what is wrong");
  EXPECT_EQ(m_terminal.Read(), "lkbench: what is\n  wrong\n");
  EXPECT_THAT(log.str(), EndsWith("Z  lkbench: what is wrong\n"));
  console.Statement("how it is on this machine");
  EXPECT_EQ(m_terminal.Read(), "how it is on this\n  machine\n");
  console.Result("a table of many words");
  EXPECT_EQ(m_terminal.Read(), "a table of many words\n");
}

TEST_F(ConsoleTest, WhatIsBadInAResultIsPaintedButNotInTheLog) {
  std::ostringstream log;
  Console console(m_terminal.File(), m_terminal.File());
  console.CopyTo(&log);
  console.Result("FAIL and FAIL", "FAIL");
  EXPECT_EQ(m_terminal.Read(), "\x1b[31mFAIL\x1b[0m and \x1b[31mFAIL\x1b[0m\n");
  EXPECT_THAT(log.str(), EndsWith("Z  FAIL and FAIL\n"));
}

TEST_F(ConsoleTest, TheStatusGoesWithItsScope) {
  Console console(m_terminal.File(), m_terminal.File());
  {
    const StatusScope scope(console);
    console.Status(Line("half"));
    m_terminal.Read();
  }
  EXPECT_EQ(m_terminal.Read(), "\r\x1b[J");
}

TEST_F(ConsoleTest, TheStatusGoesWithTheConsole) {
  {
    Console console(m_terminal.File(), m_terminal.File());
    console.Status(Line("half"));
    m_terminal.Read();
  }
  EXPECT_EQ(m_terminal.Read(), "\r\x1b[J");
}

TEST_F(ConsoleTest, TheStatusGoesAtOnceBeforeTheProcessDoes) {
  Console console(m_terminal.File(), m_terminal.File());
  console.Status(Line("half"));
  m_terminal.Read();
  console.EraseStatusAtOnce();
  EXPECT_EQ(m_terminal.Read(), "\r\x1b[J");
}

TEST_F(ConsoleTest, AStreamHasObjectsOnly) {
  const Pty errors(200);
  std::ostringstream log;
  Console console(m_terminal.File(), errors.File());
  console.CopyTo(&log);
  console.SetFormat(OutputFormat::kJson);
  console.Progress("progress");
  console.Result("result");
  console.Status("status", Line("status"));
  console.Status(Line("status"));
  EXPECT_EQ(m_terminal.Read(), "");
  EXPECT_THAT(log.str(), testing::HasSubstr("Z  result\n"));
  console.Object({{"type", "load"}});
  EXPECT_EQ(m_terminal.Read(), "{\"type\":\"load\"}\n");
  console.Problem("bad");
  EXPECT_EQ(m_terminal.Read(), "{\"type\":\"problem\",\"text\":\"bad\"}\n");
  EXPECT_EQ(errors.Read(), "lkbench: bad\n");
}

TEST_F(ConsoleTest, TextHasNoObjects) {
  Console console(m_terminal.File(), m_terminal.File());
  console.Object({{"type", "load"}});
  EXPECT_EQ(m_terminal.Read(), "");
}

}  // namespace
}  // namespace lkbench
