// SPDX-License-Identifier: Apache-2.0
// serve_local FOLDER [SERVER-OPTION]...
// Holds a private server in a folder for programs that are compared with each other. Prints "socket=",
// "user=", "schema=" and "pid=" lines once it answers, and ends when standard input is closed.
#include <iostream>
#include <limits>

#include "localdb/DataFiles.h"
#include "localdb/LocalServer.h"

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "usage: serve_local FOLDER [SERVER-OPTION]...\n";
    return 1;
  }
  try {
    localdb::Options options;
    options.server_arguments.assign(argv + 2, argv + argc);
    const localdb::LocalServer server(argv[1], options);
    if (!server.Started())
      throw localdb::LocalServerError("a server runs already in '" + server.Folder().string() + "'");
    std::cout << "socket=" << server.SocketPath().string() << "\nuser=" << server.User()
              << "\nschema=" << localdb::kSchema << "\npid=" << server.ServerPid() << std::endl;
    std::cin.ignore(std::numeric_limits<std::streamsize>::max());
  } catch (const localdb::LocalServerError& error) {
    std::cerr << "serve_local: " << error.what() << "\n";
    return 1;
  }
}
