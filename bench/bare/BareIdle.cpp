// SPDX-License-Identifier: Apache-2.0
// bare_idle SOCKET USER SCHEMA SESSIONS
// Opens sessions of the database's own client library, prints "ready" and keeps them until standard input is
// closed: what connections take of memory with nothing around them.
#include <cstdlib>
#include <iostream>
#include <limits>
#include <list>

#include "bench/bare/Session.h"

int main(int argc, char** argv) {
  if (argc != 5) {
    std::cerr << "usage: bare_idle SOCKET USER SCHEMA SESSIONS\n";
    return 1;
  }
  std::list<bare::Session> sessions;
  for (long left = std::strtol(argv[4], nullptr, 10); left > 0; --left)
    sessions.emplace_back(argv[1], argv[2], argv[3]);
  std::cout << "ready" << std::endl;
  std::cin.ignore(std::numeric_limits<std::streamsize>::max());
}
