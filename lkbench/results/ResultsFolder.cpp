// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/ResultsFolder.h"

#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

#include "lkbench/results/RunFile.h"

namespace lkbench {
namespace {

namespace fs = std::filesystem;

constexpr const char* kParent = "lkbench-results";

std::string ErrnoText() { return std::generic_category().message(errno); }

// 2026-01-02T03-04-05Z: no colons, which some file systems refuse.
std::string FileTime(std::chrono::system_clock::time_point moment) {
  std::string text = UtcText(moment);
  for (char& c : text)
    if (c == ':') c = '-';
  return text;
}

[[noreturn]] void RefuseParent(const std::string& reason) {
  throw UsageError("results: " + std::string(kParent) + " cannot be written: " + reason +
                   "; --results DIR names another place");
}

fs::path MakeNew(const std::string& verb, std::chrono::system_clock::time_point started) {
  std::error_code error;
  fs::create_directories(kParent, error);
  const std::string name = FileTime(started) + '-' + verb;
  for (int number = 1; !error; ++number) {
    fs::path path = fs::path(kParent) / (number == 1 ? name : name + '-' + std::to_string(number));
    if (fs::create_directory(path, error)) return path;
  }
  RefuseParent(error.message());
}

[[noreturn]] void RefuseToMake(const fs::path& path, const std::string& reason) {
  throw UsageError("results: " + path.string() + " cannot be made: " + reason);
}

// That a folder which is there may take the files of a run.
void RequireFree(const fs::path& path) {
  std::error_code error;
  if (!fs::is_empty(path, error))
    throw UsageError("results: " + path.string() +
                     (error ? " cannot be read: " + error.message()
                            : " holds files already: name a new or an empty folder"));
  if (access(path.c_str(), W_OK) != 0)
    throw UsageError("results: " + path.string() + " cannot be written: " + ErrnoText());
}

fs::path MakeAsked(const fs::path& path) {
  std::error_code error;
  fs::create_directories(path, error);
  if (error) RefuseToMake(path, error.message());
  RequireFree(path);
  return path;
}

// What keeps entries from being made in a folder, or in the nearest one above it that is there; empty:
// nothing.
std::string WhyClosed(fs::path folder) {
  std::error_code unknown;
  folder = fs::absolute(folder).lexically_normal();
  while (!fs::exists(folder, unknown) && folder.has_relative_path()) folder = folder.parent_path();
  return access((folder / ".").c_str(), W_OK | X_OK) == 0 ? "" : ErrnoText();
}

}  // namespace

void RequireResultsPlace(const std::string& asked) {
  std::error_code unknown;
  if (fs::is_directory(asked, unknown)) return RequireFree(asked);
  const std::string reason = WhyClosed(asked.empty() ? kParent : asked);
  if (!reason.empty()) asked.empty() ? RefuseParent(reason) : RefuseToMake(asked, reason);
}

std::string WhyNotWritable(const fs::path& file) {
  std::error_code unknown;
  if (fs::is_directory(file, unknown)) return std::generic_category().message(EISDIR);
  const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
  if (access((folder / ".").c_str(), W_OK | X_OK) != 0) return ErrnoText();
  return fs::exists(file, unknown) && access(file.c_str(), W_OK) != 0 ? ErrnoText() : "";
}

ResultsFolder::ResultsFolder(const std::string& asked, const std::string& verb,
                             std::chrono::system_clock::time_point started)
    : m_path(asked.empty() ? MakeNew(verb, started) : MakeAsked(asked)) {}

void ResultsFolder::Write(const std::string& name, std::string_view text) const {
  const fs::path file = m_path / name;
  std::error_code told_by_the_write;
  fs::create_directories(file.parent_path(), told_by_the_write);
  WriteWhole(file, text);
}

void RefuseToWrite(const fs::path& file, const std::string& reason) {
  throw ResultsError("results: " + file.string() + " cannot be written: " + reason);
}

void WriteWhole(const fs::path& file, std::string_view text) {
  const fs::path temporary = file.string() + ".part";
  std::ofstream stream(temporary, std::ios::binary | std::ios::trunc);
  stream << text;
  stream.close();
  std::error_code error;
  if (stream) fs::rename(temporary, file, error);
  if (!stream || error) {
    const std::string reason = error ? error.message() : ErrnoText();
    fs::remove(temporary, error);
    RefuseToWrite(file, reason);
  }
}

std::string ReadWhole(const fs::path& file) {
  std::error_code unknown;
  if (fs::is_directory(file, unknown)) throw UsageError(file.string() + " cannot be read: it is a folder");
  std::ifstream stream(file, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), {}};
  if (!stream.is_open() || stream.bad()) throw UsageError(file.string() + " cannot be read: " + ErrnoText());
  return text;
}

}  // namespace lkbench
