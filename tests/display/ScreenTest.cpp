// SPDX-License-Identifier: Apache-2.0
#include "lkbench/display/Screen.h"

#include "Pty.h"

namespace lkbench {
namespace {

FittedLine Line(const std::string& text, Tone tone = Tone::kPlain) {
  return [=](std::size_t columns) { return CutToWidth(Spans{{text, tone}}, columns); };
}

TEST(Screen, AStatusLineIsOneTextFromTheFirstColumnAndLeavesTheCursorThere) {
  const TerminalVariables variables;
  const Pty terminal;
  Screen screen(terminal.File(), terminal.File());
  screen.ShowStatus(Line("half"));
  EXPECT_EQ(terminal.Read(), "\rhalf\x1b[J\r");
  screen.EraseStatus();
  EXPECT_EQ(terminal.Read(), "\r\x1b[J");
  screen.EraseStatus();
  EXPECT_EQ(terminal.Read(), "");
}

TEST(Screen, LinesStandAboveTheStatusWhicheverOutputTheyAreOf) {
  const TerminalVariables variables;
  const Pty terminal;
  Screen screen(terminal.File(), terminal.File());
  screen.Print("before");
  EXPECT_EQ(terminal.Read(), "before\n");
  screen.ShowStatus(Line("half"));
  terminal.Read();
  screen.Print("one\ntwo");
  EXPECT_EQ(terminal.Read(), "\rone\x1b[K\ntwo\x1b[K\nhalf\x1b[J\r");
  screen.PrintError("bad");
  EXPECT_EQ(terminal.Read(), "\rbad\x1b[K\nhalf\x1b[J\r");
}

TEST(Screen, TheStatusFitsTheWindowAsItIsNow) {
  const TerminalVariables variables;
  const Pty terminal(11);
  Screen screen(terminal.File(), terminal.File());
  screen.ShowStatus(Line("0123456789abcdef"));
  EXPECT_EQ(terminal.Read(), "\r0123456789\x1b[J\r");
  terminal.Resize(6);
  screen.Print("x");
  EXPECT_EQ(terminal.Read(), "\rx\x1b[K\n01234\x1b[J\r");
  EXPECT_EQ(screen.Columns(), 5u);
}

TEST(Screen, AnErrorOutputElsewhereGetsPlainLines) {
  const TerminalVariables variables;
  const Pty terminal;
  const Pty other;
  Screen screen(terminal.File(), other.File());
  screen.ShowStatus(Line("half"));
  terminal.Read();
  screen.PrintError("bad");
  EXPECT_EQ(other.Read(), "bad\n");
  EXPECT_EQ(terminal.Read(), "");
}

TEST(Screen, ColoursAreThereUnlessNoColorIsSet) {
  const Pty terminal;
  {
    const TerminalVariables variables;
    Screen screen(terminal.File(), terminal.File());
    screen.ShowStatus(Line("2", Tone::kBad));
    EXPECT_EQ(terminal.Read(), "\r\x1b[31m2\x1b[0m\x1b[J\r");
  }
  const TerminalVariables variables("xterm", "1");
  Screen screen(terminal.File(), terminal.File());
  screen.ShowStatus(Line("2", Tone::kBad));
  EXPECT_EQ(terminal.Read(), "\r2\x1b[J\r");
}

TEST(Screen, ADumbTerminalGetsPlainLinesOfAnyLength) {
  for (const char* term : {"dumb", "", static_cast<const char*>(nullptr)}) {
    const TerminalVariables variables(term);
    const Pty terminal(11);
    Screen screen(terminal.File(), terminal.File());
    EXPECT_FALSE(screen.Redraws());
    EXPECT_GT(screen.Columns(), 1000u);
    screen.ShowStatus(Line("half"));
    screen.Print("one");
    EXPECT_EQ(terminal.Read(), "one\n");
  }
}

TEST(Screen, AFileGetsPlainLines) {
  const TerminalVariables variables;
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  Screen screen(ends[1], ends[1]);
  EXPECT_FALSE(screen.Paints());
  screen.ShowStatus(Line("half"));
  screen.Print("one");
  screen.PrintError("bad");
  close(ends[1]);
  char text[20];
  EXPECT_EQ(std::string(text, static_cast<std::size_t>(read(ends[0], text, sizeof text))), "one\nbad\n");
  close(ends[0]);
}

}  // namespace
}  // namespace lkbench
