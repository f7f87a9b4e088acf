// SPDX-License-Identifier: Apache-2.0
// Another process for the contract tests: oci_exec CONNECT-STRING USER SQL…, the password in
// OCI_EXEC_PASSWORD. Runs each text and commits. Ends with 0, or with 1 and the error.
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "Client.h"

int main(int count, char** arguments) {
  const char* password = std::getenv("OCI_EXEC_PASSWORD");
  if (count < 4 || !password) {
    std::fputs("usage: OCI_EXEC_PASSWORD=… oci_exec CONNECT-STRING USER SQL…\n", stderr);
    return 1;
  }
  try {
    oci_test::Client client;
    client.Connect(arguments[1], arguments[2], password);
    for (int i = 3; i < count; ++i) oci_test::MustExec(client, arguments[i], OCI_COMMIT_ON_SUCCESS);
    return 0;
  } catch (const std::exception& problem) {
    std::fputs(problem.what(), stderr);
    return 1;
  }
}
