// SPDX-License-Identifier: Apache-2.0
// A terminal for tests: what is written to its file can be read as it came.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

class Pty {
 public:
  explicit Pty(unsigned short columns = 40) : m_master(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    grantpt(m_master);
    unlockpt(m_master);
    m_file = open(ptsname(m_master), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings{};
    tcgetattr(m_file, &settings);
    cfmakeraw(&settings);  // line ends stay as they are
    tcsetattr(m_file, TCSANOW, &settings);
    Resize(columns);
  }
  ~Pty() {
    close(m_file);
    close(m_master);
  }
  Pty(const Pty&) = delete;
  Pty& operator=(const Pty&) = delete;

  int File() const { return m_file; }
  void Resize(unsigned short columns) const {
    const winsize window{24, columns, 0, 0};
    EXPECT_EQ(ioctl(m_master, TIOCSWINSZ, &window), 0);
  }
  // All that was written since the last call.
  std::string Read() const {
    std::string text;
    pollfd file{m_master, POLLIN, 0};
    while (poll(&file, 1, 0) == 1) {
      char buffer[1000];
      const ssize_t count = read(m_master, buffer, sizeof buffer);
      if (count <= 0) break;
      text.append(buffer, static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  int m_master;
  int m_file;
};

// Environment variables of a capable terminal, and those from before at the end.
class TerminalVariables {
 public:
  explicit TerminalVariables(const char* term = "xterm", const char* no_color = nullptr) {
    Keep("TERM", m_term);
    Keep("NO_COLOR", m_no_color);
    Set("TERM", term);
    Set("NO_COLOR", no_color);
  }
  ~TerminalVariables() {
    Set("TERM", m_term.second ? m_term.first.c_str() : nullptr);
    Set("NO_COLOR", m_no_color.second ? m_no_color.first.c_str() : nullptr);
  }
  TerminalVariables(const TerminalVariables&) = delete;
  TerminalVariables& operator=(const TerminalVariables&) = delete;

 private:
  using Value = std::pair<std::string, bool>;
  static void Keep(const char* name, Value& value) {
    const char* text = std::getenv(name);
    value = {text == nullptr ? "" : text, text != nullptr};
  }
  static void Set(const char* name, const char* text) {
    if (text == nullptr)
      unsetenv(name);
    else
      setenv(name, text, 1);
  }
  Value m_term;
  Value m_no_color;
};
