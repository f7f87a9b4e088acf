// SPDX-License-Identifier: Apache-2.0
// The program that the trace tests trace: SCENARIO CONNECT-STRING USER PASSWORD. Its values and the password
// must not come up in any trace.
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <thread>
#include <vector>

#include "Client.h"
#include "Planted.h"

namespace oci_test {
namespace {

sword BindText(Statement& statement, ub4 position, const std::string& text) {
  return statement.Bind(position, const_cast<char*>(text.data()), static_cast<sb4>(text.size()), SQLT_CHR);
}

// Executes with the planted text as every value. Errors are wanted as often as not.
void TryWithText(Client& client, std::string_view sql, const std::string& text, ub4 places) {
  Statement statement(client);
  if (statement.Prepare(sql) != OCI_SUCCESS) return;
  for (ub4 i = 1; i <= places; ++i) BindText(statement, i, text);
  statement.Execute();
}

void Insert(Client& client) {
  Statement statement(client, "INSERT INTO T_TRACE VALUES (:ID, :S, :F, TO_DATE(:D, 'YYYY-MM-DD'))");
  int id = kPlantedNumber;
  double fraction = kPlantedFraction;
  std::string text = kPlantedText, date = kPlantedDate;
  statement.Bind(1, &id, sizeof id, SQLT_INT);
  BindText(statement, 2, text);
  statement.Bind(3, &fraction, sizeof fraction, SQLT_FLT);
  BindText(statement, 4, date);
  statement.Execute();
  statement.Execute();  // the key is there already
}

void InsertArray(Client& client) {
  Statement statement(client, "INSERT INTO T_TRACE (ID, S) VALUES (:1, :2)");
  std::array<int, 3> ids{1, kPlantedNumber, 2};  // the middle one is there already
  std::array<std::array<char, 32>, 3> texts{};
  for (auto& text : texts) std::strcpy(text.data(), kPlantedText);
  statement.Bind(1, ids.data(), sizeof ids[0], SQLT_INT);
  statement.Bind(2, texts.data(), sizeof texts[0], SQLT_STR);
  statement.Execute(3, OCI_BATCH_ERRORS);
  statement.Execute(3);
}

// Everything that puts a value into a message of the server.
void Fail(Client& client) {
  TryWithText(client, "INSERT INTO T_TRACE (ID) VALUES (:1)", kPlantedText, 1);
  TryWithText(client, "INSERT INTO T_TRACE (ID, S) VALUES (-1, :1)", kPlantedText, 1);
  TryWithText(client, "INSERT INTO T_TRACE (ID, D) VALUES (3, :1)", kPlantedText, 1);
  TryWithText(client, "INSERT INTO T_TRACE (ID, S) VALUES (4, :1 || :2 || :3 || :4)", kPlantedText, 4);
  TryWithText(client, "UPDATE T_TRACE SET F = S", kPlantedText, 0);
  TryWithText(client, "INSERT INTO T_UNIQUE (S) SELECT S FROM T_TRACE", kPlantedText, 0);
  TryWithText(client, "BEGIN EXECUTE IMMEDIATE :1; END;", kPlantedText, 1);
  TryWithText(client, "BEGIN EXECUTE IMMEDIATE 'SELECT ' || :1 || ' FROM T_TRACE'; END;", kPlantedName, 1);
  TryWithText(client,
              "DECLARE V VARCHAR2(99) := :1; BEGIN SIGNAL SQLSTATE '45000' SET MESSAGE_TEXT = V; END;",
              kPlantedText, 1);
  TryWithText(
      client,
      "DECLARE V VARCHAR2(99) := :1; BEGIN SIGNAL SQLSTATE '45000' SET MYSQL_ERRNO = 1146, MESSAGE_TEXT "
      "= V; END;",
      kPlantedText, 1);
}

void Values(Client& client) {
  Exec(client, "DROP TABLE T_TRACE");
  Exec(client, "DROP TABLE T_UNIQUE");
  MustExec(
      client,
      "CREATE TABLE T_TRACE (ID NUMBER(12) PRIMARY KEY, S VARCHAR2(40), F NUMBER, D DATE, CHECK (ID > 0))");
  MustExec(client, "CREATE TABLE T_UNIQUE (S VARCHAR2(40) UNIQUE)");
  Insert(client);
  InsertArray(client);
  Fail(client);
  client.Commit();
  if (Rows(client, "SELECT * FROM T_TRACE")[0].size() != 4)
    throw std::runtime_error("the rows are not there");
  Exec(client, "SELECT NOTHING FROM T_NOWHERE");
}

void Ping(Client& client) {
  for (int i = 0; i < 100; ++i) OCIPing(client.service, client.error, OCI_DEFAULT);
}

void Several(Client& first) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&first] {
      for (int n = 0; n < 200; ++n) OCIPing(first.service, nullptr, OCI_DEFAULT);
    });
  Ping(first);
  for (auto& thread : threads) thread.join();
}

// A statement that nobody frees, in an environment that nobody frees.
void Forget(Client& client) {
  void* statement = nullptr;
  OCIHandleAlloc(client.env, &statement, OCI_HTYPE_STMT, 0, nullptr);
}

void ForgetAndDie(Client& client) {
  Forget(client);
  _exit(0);
}

int Run(const std::string& scenario, const char* const* address) {
  static const std::map<std::string, std::function<void(Client&)>> kScenarios{
      {"values", Values}, {"ping", Ping}, {"several", Several}, {"forget", Forget}, {"die", ForgetAndDie}};
  auto client = std::make_unique<Client>();
  client->Connect(address[0], address[1], address[2]);
  kScenarios.at(scenario)(*client);
  if (scenario == "forget") static_cast<void>(client.release());
  return 0;
}

}  // namespace
}  // namespace oci_test

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  try {
    return oci_test::Run(argv[1], argv + 2);
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "%s\n", problem.what());
    return 1;
  }
}
