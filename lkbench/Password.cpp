// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "lkbench/Failure.h"
#include "lkbench/Target.h"

namespace lkbench {
namespace {

// The terminal of the process, open; `state` becomes its settings.
int OpenTerminal(termios& state) {
  const int file = open("/dev/tty", O_RDWR | O_CLOEXEC);
  if (file < 0 || tcgetattr(file, &state) != 0)
    throw UsageError("password: there is no terminal to ask on: use env:NAME or file:PATH");
  return file;
}

// A terminal whose echo and interrupt key are off while the object lives: an interrupt is read as a
// character, so that the terminal is never left silent.
class SilentTerminal {
 public:
  SilentTerminal() : m_file(OpenTerminal(m_before)) {
    termios silent = m_before;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
    silent.c_cc[VEOL] = kInterruptKey;  // ends a line, so that it is read at once
    tcsetattr(m_file, TCSAFLUSH, &silent);
  }
  ~SilentTerminal() {
    tcsetattr(m_file, TCSAFLUSH, &m_before);
    close(m_file);
  }
  SilentTerminal(const SilentTerminal&) = delete;
  SilentTerminal& operator=(const SilentTerminal&) = delete;

  void Write(const char* text) {
    if (write(m_file, text, std::char_traits<char>::length(text)) < 0)
      throw UsageError("password: the terminal cannot be written to: use env:NAME or file:PATH");
  }
  std::string ReadLine() {
    std::string line;
    for (char c = 0; read(m_file, &c, 1) == 1 && c != '\n'; line += c)
      if (c == kInterruptKey) throw Failure(kInterrupted, "interrupted while asking for the password");
    return line;
  }

 private:
  static constexpr char kInterruptKey = 3;
  termios m_before{};
  int m_file;
};

std::string FromFile(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  if (!std::getline(file, line)) throw UsageError("password: file " + path + " cannot be read or is empty");
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

}  // namespace

void RequireTerminal() {
  termios unused{};
  close(OpenTerminal(unused));
}

std::string ReadPassword(const std::string& source) {
  if (source.empty()) return {};
  if (source.starts_with("env:")) {
    const char* value = std::getenv(source.c_str() + 4);
    if (value == nullptr)
      throw UsageError("password: the environment variable " + source.substr(4) + " is not set");
    return value;
  }
  if (source.starts_with("file:")) return FromFile(source.substr(5));
  SilentTerminal terminal;
  terminal.Write("Password: ");
  std::string password = terminal.ReadLine();
  terminal.Write("\n");
  return password;
}

}  // namespace lkbench
