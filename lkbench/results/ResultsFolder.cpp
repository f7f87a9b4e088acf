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

fs::path MakeNew(const std::string& verb, std::chrono::system_clock::time_point started) {
  std::error_code error;
  fs::create_directories(kParent, error);
  const std::string name = FileTime(started) + '-' + verb;
  for (int number = 1; !error; ++number) {
    const fs::path path = fs::path(kParent) / (number == 1 ? name : name + '-' + std::to_string(number));
    if (fs::create_directory(path, error)) return path;
  }
  throw UsageError("results: " + std::string(kParent) + " cannot be written: " + error.message() +
                   "; --results DIR names another place");
}

fs::path MakeAsked(const fs::path& path) {
  std::error_code error;
  fs::create_directories(path, error);
  if (error) throw UsageError("results: " + path.string() + " cannot be made: " + error.message());
  if (!fs::is_empty(path, error))
    throw UsageError("results: " + path.string() +
                     (error ? " cannot be read: " + error.message()
                            : " holds files already: name a new or an empty folder"));
  if (access(path.c_str(), W_OK) != 0)
    throw UsageError("results: " + path.string() + " cannot be written: " + ErrnoText());
  return path;
}

}  // namespace

ResultsFolder::ResultsFolder(const std::string& asked, const std::string& verb,
                             std::chrono::system_clock::time_point started)
    : m_path(asked.empty() ? MakeNew(verb, started) : MakeAsked(asked)) {}

void ResultsFolder::Write(const std::string& name, std::string_view text) const {
  WriteWhole(m_path / name, text);
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
    throw ResultsError("results: " + file.string() + " cannot be written: " + reason);
  }
}

std::string ReadWhole(const fs::path& file) {
  std::error_code unknown;
  if (fs::is_directory(file, unknown)) throw UsageError(file.string() + " cannot be read: it is a folder");
  std::ifstream stream(file, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  if (!stream.is_open() || stream.bad()) throw UsageError(file.string() + " cannot be read: " + ErrnoText());
  return text;
}

}  // namespace lkbench
