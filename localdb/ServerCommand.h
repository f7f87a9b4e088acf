// SPDX-License-Identifier: Apache-2.0
// CommandLine is a program's arguments and environment in the form that execve takes. It is built before a
// fork, since nothing may be allocated after it.
#pragma once

#include <string>
#include <vector>

#include "localdb/Folder.h"
#include "localdb/LocalServer.h"

namespace localdb {

class CommandLine {
 public:
  CommandLine(std::vector<std::string> arguments, std::vector<std::string> environment);
  CommandLine(const CommandLine&) = delete;  // the pointers lead into the texts
  CommandLine& operator=(const CommandLine&) = delete;

  const char* Program() const { return m_arguments.front().c_str(); }
  char* const* Arguments() const { return m_argument_pointers.data(); }
  char* const* Environment() const { return m_environment_pointers.data(); }

 private:
  std::vector<std::string> m_arguments;
  std::vector<std::string> m_environment;
  std::vector<char*> m_argument_pointers;
  std::vector<char*> m_environment_pointers;
};

// The server on the folder's data; what the options add comes last and so wins.
CommandLine ServeCommand(const Folder& folder, const Options& options);

// The server that reads SQL from its standard input into the new data folder and ends. The log gets the size
// that the first start will want. Nothing is flushed to the disk: whoever keeps the data does that.
CommandLine CreateCommand(const Folder& folder, const Settings& settings);

}  // namespace localdb
