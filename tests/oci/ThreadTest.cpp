// SPDX-License-Identifier: Apache-2.0
#include <thread>

#include "Contract.h"

namespace oci_test {
namespace {

OCI_CONTRACT_SUITE(Threads);

TEST_P(Threads, SessionsOfTheirOwnWorkSideBySide) {
  Table("T_THREAD", "ID NUMBER NOT NULL, S VARCHAR2(10), PRIMARY KEY(ID)");
  Drop("SEQUENCE S_THREAD");
  MustExec(client, "CREATE SEQUENCE S_THREAD START WITH 1 CACHE 100");
  constexpr int kThreads = 6, kRounds = 40;
  std::vector<std::thread> threads;
  std::vector<std::string> problems(kThreads);
  for (int i = 0; i < kThreads; ++i)
    threads.emplace_back([&, i] {
      try {
        const auto mine = Another();
        Statement next(*mine, "SELECT S_THREAD.NEXTVAL FROM DUAL");
        double id = 0;
        next.Define(1, &id, 8, SQLT_FLT);
        for (int round = 0; round < kRounds; ++round) {
          if (next.Execute() != OCI_SUCCESS) throw std::runtime_error(mine->LastReport().text);
          Statement describe(*mine, "SELECT * FROM T_THREAD");
          if (describe.Execute(0, OCI_DESCRIBE_ONLY) != OCI_SUCCESS)
            throw std::runtime_error(mine->LastReport().text);
          Statement insert(*mine, "INSERT INTO T_THREAD (ID) VALUES (:1)");
          insert.Bind(1, &id, 8, SQLT_FLT);
          if (insert.Execute(1, OCI_COMMIT_ON_SUCCESS) != OCI_SUCCESS)
            throw std::runtime_error(mine->LastReport().text);
        }
      } catch (const std::exception& problem) {
        problems[i] = problem.what();
      }
    });
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(problems, std::vector<std::string>(kThreads));
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_THREAD"), std::to_string(kThreads * kRounds));
}

TEST_P(Threads, CallsOnOneSessionQueueUp) {
  constexpr int kThreads = 4, kRounds = 50;
  std::vector<std::thread> threads;
  std::vector<int> failures(kThreads);
  for (int i = 0; i < kThreads; ++i)
    threads.emplace_back([&, i] {
      OCIError* error = nullptr;
      OCIHandleAlloc(client.env, reinterpret_cast<void**>(&error), OCI_HTYPE_ERROR, 0, nullptr);
      for (int round = 0; round < kRounds; ++round)
        if (OCIPing(client.service, error, OCI_DEFAULT) != OCI_SUCCESS) ++failures[i];
      OCIHandleFree(error, OCI_HTYPE_ERROR);
    });
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(failures, std::vector<int>(kThreads));
}

TEST(Environments, ComeAndGoOnManyThreads) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i)
    threads.emplace_back([] {
      for (int round = 0; round < 20; ++round) {
        Client client;
        OCIBreak(client.service, client.error);
      }
    });
  for (auto& thread : threads) thread.join();
  Client client;
  EXPECT_EQ(client.ServerStatus(), 0u);
}

}  // namespace
}  // namespace oci_test
