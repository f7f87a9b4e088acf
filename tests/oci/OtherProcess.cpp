// SPDX-License-Identifier: Apache-2.0
#include "OtherProcess.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <vector>

namespace oci_test {

void RunElsewhere(Transport transport, std::initializer_list<std::string> texts) {
  const Address address = AddressOf(transport);
  std::vector<std::string> arguments{OCI_EXEC_PROGRAM, address.connect_string, address.user};
  arguments.insert(arguments.end(), texts);
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  setenv("OCI_EXEC_PASSWORD", address.password.c_str(), 1);
  pid_t child = 0;
  if (posix_spawn(&child, pointers[0], nullptr, nullptr, pointers.data(), environ) != 0)
    throw std::runtime_error("cannot start " + arguments[0]);
  int status = 0;
  if (waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
    throw std::runtime_error("the other process failed");
}

}  // namespace oci_test
