// SPDX-License-Identifier: Apache-2.0
#include "lkbench/display/Screen.h"

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <limits>

namespace lkbench {
namespace {

constexpr std::size_t kUsualColumns = 80;  // where the terminal does not tell
constexpr const char* kToBegin = "\r";
constexpr const char* kEraseLine = "\x1b[K";   // from the cursor on
constexpr const char* kEraseBelow = "\x1b[J";  // likewise, and all lines below

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

bool CanRedraw(int file) {
  const std::string term = Variable("TERM");
  return isatty(file) == 1 && !term.empty() && term != "dumb";
}

bool IsSame(int one, int other) {
  struct stat first {};
  struct stat second {};
  return isatty(one) == 1 && isatty(other) == 1 && fstat(one, &first) == 0 && fstat(other, &second) == 0 &&
         first.st_rdev == second.st_rdev;
}

// The last column stays free: some terminals begin a new line once it is taken.
std::size_t ColumnsOf(int file) {
  winsize window{};
  const bool known = ioctl(file, TIOCGWINSZ, &window) == 0 && window.ws_col > 1;
  return (known ? window.ws_col : kUsualColumns) - 1;
}

// What cannot be written is lost: there is nowhere to say so.
void Write(int file, const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    const ssize_t written = write(file, text.data() + at, text.size() - at);
    if (written < 0 && errno != EINTR) return;
    at += written > 0 ? static_cast<std::size_t>(written) : 0;
  }
}

}  // namespace

Screen::Screen(int out, int err)
    : m_out(out),
      m_err(err),
      m_redraws(CanRedraw(out)),
      m_paints(m_redraws && Variable("NO_COLOR").empty()),
      m_is_shared(IsSame(out, err)) {}

std::size_t Screen::Columns() const {
  return m_redraws ? ColumnsOf(m_out) : std::numeric_limits<std::size_t>::max();
}

std::size_t Screen::ErrorColumns() const {
  return CanRedraw(m_err) ? ColumnsOf(m_err) : std::numeric_limits<std::size_t>::max();
}

// The status line is overwritten, not erased first: that would be seen.
std::string Screen::Above(const std::string& text) const {
  if (!m_status) return text + '\n';
  std::string lines = kToBegin;
  for (const char c : text) lines += c == '\n' ? std::string(kEraseLine) + '\n' : std::string(1, c);
  const std::string status = TextOf(m_status(Columns()), m_paints);
  return lines + kEraseLine + '\n' + status + kEraseBelow + kToBegin;
}

void Screen::Print(const std::string& text) { Write(m_out, Above(text)); }

void Screen::PrintError(const std::string& text) { Write(m_err, m_is_shared ? Above(text) : text + '\n'); }

void Screen::ShowStatus(FittedLine status) {
  if (!m_redraws) return;
  m_status = std::move(status);
  Write(m_out, kToBegin + TextOf(m_status(Columns()), m_paints) + kEraseBelow + kToBegin);
}

void Screen::EraseStatus() {
  if (!m_status) return;
  m_status = {};
  Write(m_out, std::string(kToBegin) + kEraseBelow);
}

}  // namespace lkbench
