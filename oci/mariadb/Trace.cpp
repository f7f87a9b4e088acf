// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Trace.h"

#include <fcntl.h>
#include <mysql.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <mutex>
#include <stdexcept>

namespace ocimaria::trace {
namespace {

constexpr char kVariable[] = "OCIMARIADB_TRACE";
constexpr unsigned kAllBits = kCalls | kErrors | kSql | kHandles | kConnections | kSettings;

struct Output {
  std::mutex mutex;
  int file = STDERR_FILENO;
};

// Never destroyed: handles may be freed while the process already runs its exit handlers.
Output& TheOutput() {
  static auto& output = *new Output;
  return output;
}

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

void Complain(const std::string& problem) {
  WriteAll(STDERR_FILENO, std::string(kVariable) + ": " + problem + "; nothing is traced\n");
}

std::string Now() {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  std::tm utc{};
  ::gmtime_r(&now.tv_sec, &utc);
  char text[64];
  const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &utc);
  std::snprintf(text + length, sizeof text - length, ".%06ldZ", now.tv_nsec / 1000);
  return text;
}

void Open(const Request& request) {
  if (request.file.empty()) return;
  TheOutput().file = ::open(request.file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (TheOutput().file < 0)
    throw std::invalid_argument("cannot open " + OneLine(request.file) + ": " + std::strerror(errno));
}

void TellSettings(const Request& request) {
  Write("setting", "process=" + std::to_string(::getpid()) + " trace=" + std::to_string(request.bits) +
                       " interface=19.0 connector=" + mysql_get_client_info());
}

void Start(const char* value) {
  try {
    const Request request = ParseRequest(value);
    if (request.bits == 0) return;
    Open(request);
    active_bits.store(request.bits, std::memory_order_relaxed);
    if (On(kSettings)) TellSettings(request);
  } catch (const std::exception& problem) {
    Complain(problem.what());
  }
}

// As the library is loaded, so that its end comes after those of the objects made later.
struct AtLoad {
  AtLoad() {
    if (const char* value = ::secure_getenv(kVariable)) Start(value);
  }
} const at_load;

}  // namespace

Request ParseRequest(std::string_view value) {
  Request request;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), request.bits);
  const std::string_view rest(end, static_cast<std::size_t>(value.data() + value.size() - end));
  if (!value.empty() && (error != std::errc{} || request.bits > kAllBits))
    throw std::invalid_argument(
        "\"" + OneLine(value) +
        "\" does not begin with a number from 0 to 63: the sum of calls 1, errors 2, SQL 4, "
        "handles 8, connections 16, settings 32");
  if (!rest.empty() && (rest.front() != ':' || rest.size() == 1))
    throw std::invalid_argument("\"" + OneLine(value) +
                                "\" is not right after the number: write BITS for stderr or BITS:FILE");
  if (!rest.empty()) request.file = rest.substr(1);
  return request;
}

std::string OneLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  for (const char c : text) {
    if (c == '\n') {
      line += "\\n";
    } else if (c == '\\') {
      line += "\\\\";
    } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\x%02x", static_cast<unsigned char>(c));
      line += escaped;
    } else {
      line += c;
    }
  }
  return line;
}

Context& ThisThread() {
  thread_local Context context;
  return context;
}

void Write(const char* kind, unsigned long connection, std::string_view text) {
  char prefix[64];
  std::snprintf(prefix, sizeof prefix, " T%d C%s %-10s ", static_cast<int>(::gettid()),
                connection ? std::to_string(connection).c_str() : "-", kind);
  std::string line = Now() + prefix;
  (line += text) += '\n';
  std::lock_guard lock(TheOutput().mutex);
  if (!Active() || WriteAll(TheOutput().file, line)) return;
  active_bits.store(0, std::memory_order_relaxed);
  Complain(std::string("cannot write: ") + std::strerror(errno) + ", from here on");
}

void Write(const char* kind, std::string_view text) { Write(kind, ThisThread().connection, text); }

}  // namespace ocimaria::trace
