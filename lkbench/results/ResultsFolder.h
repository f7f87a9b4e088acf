// SPDX-License-Identifier: Apache-2.0
// The folder that a run leaves behind. Files are written under a temporary name and renamed, so that a file
// under its own name is whole. Throws UsageError with one line when the folder cannot be made, ResultsError
// when a file cannot be written.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>

#include "lkbench/Failure.h"

namespace lkbench {

class ResultsError : public Failure {
 public:
  explicit ResultsError(const std::string& line) : Failure(kCannotPrepare, line) {}
};

class ResultsFolder {
 public:
  // Makes `asked`, which must be new or empty. When it is empty, makes lkbench-results/TIME-VERB, with a
  // number behind it when another run took that name.
  ResultsFolder(const std::string& asked, const std::string& verb,
                std::chrono::system_clock::time_point started);

  const std::filesystem::path& Path() const { return m_path; }
  void Write(const std::string& name, std::string_view text) const;  // a name may stand in a folder

 private:
  std::filesystem::path m_path;
};

// Throws what making this folder would throw, as far as that can be told by looking. Makes nothing.
void RequireResultsPlace(const std::string& asked);
// What keeps a file of this name from being written, as far as that can be told by looking; empty: nothing.
std::string WhyNotWritable(const std::filesystem::path& file);

[[noreturn]] void RefuseToWrite(const std::filesystem::path& file,
                                const std::string& reason);  // ResultsError

// Writes a file whole or not at all. Throws ResultsError.
void WriteWhole(const std::filesystem::path& file, std::string_view text);
// The text of a file. Throws UsageError.
std::string ReadWhole(const std::filesystem::path& file);

}  // namespace lkbench
