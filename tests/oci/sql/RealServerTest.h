// SPDX-License-Identifier: Apache-2.0
// Cases on one server, which the program starts with its first case and ends with its last; each finds an
// empty schema.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "OraErrorOf.h"
#include "ServerSession.h"

namespace ocimaria::sql {

class RealServer : public testing::Test {
 protected:
  static void SetUpTestSuite() { s_session = std::make_unique<ServerSession>(); }
  static void TearDownTestSuite() { s_session.reset(); }
  void TearDown() override { s_session->Clear(); }

  static ServerSession& Db() { return *s_session; }
  static int ErrorOf(std::string_view sql) {
    return OraErrorOf([&] { Db().Run(sql); });
  }
  // Number and text, as "ORA-1: unique constraint (…) violated".
  static std::string ErrorTextOf(std::string_view sql) {
    try {
      Db().Run(sql);
    } catch (const OraError& error) {
      return "ORA-" + std::to_string(error.Code()) + ": " + error.Text();
    }
    return "";
  }

 private:
  static inline std::unique_ptr<ServerSession> s_session;
};

}  // namespace ocimaria::sql
