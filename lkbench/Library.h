// SPDX-License-Identifier: Apache-2.0
// Shared libraries, loaded for the life of the process: nothing is ever unloaded, because class information
// and error handlers point into them until the end. Failures are PrepareErrors that name the file and, when a
// symbol is missing, the symbol.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace lkbench {

enum class Visibility { kGlobal, kPrivate };  // whether libraries loaded later see its symbols

class Library {
 public:
  // `what` names its part in messages ("plug-in"). A path with a folder is taken as it is.
  Library(const std::string& what, const std::filesystem::path& file, Visibility visibility);
  // The first of `files` that the loader finds; `where` says in the message where that looks.
  Library(const std::string& what, const std::vector<std::filesystem::path>& files, const std::string& where,
          Visibility visibility);

  void* Symbol(const char* name) const;  // throws when it is missing
  std::filesystem::path Path() const;    // where the loader found it

 private:
  std::string m_what;
  void* m_handle = nullptr;
};

// The folder that holds the libraries of this program: where the loader found the one that it is linked to.
std::filesystem::path LibraryFolder();

}  // namespace lkbench
