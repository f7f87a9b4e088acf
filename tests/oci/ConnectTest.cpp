// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "Contract.h"

namespace oci_test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

OCI_CONTRACT_SUITE(Session);

constexpr char kCipher[] =
    "SELECT VARIABLE_VALUE FROM INFORMATION_SCHEMA.SESSION_STATUS WHERE VARIABLE_NAME = 'Ssl_cipher'";

TEST_P(Session, ASessionRunsStatements) { EXPECT_EQ(Value(client, "SELECT 1 + 1 FROM DUAL"), "2"); }

TEST_P(Session, TlsIsInUseExactlyWhereItIsRequired) {
  EXPECT_EQ(Value(client, kCipher) != "(null)", GetParam() == Transport::kTls);
}

TEST_P(Session, TheServerIsConnected) { EXPECT_EQ(client.ServerStatus(), 1u); }

TEST_P(Session, PingAnswers) { EXPECT_EQ(OCIPing(client.service, client.error, OCI_DEFAULT), OCI_SUCCESS); }

TEST_P(Session, TheVersionNamesARelease) {
  OraText text[200];
  ASSERT_EQ(OCIServerVersion(client.service, client.error, text, sizeof text, OCI_HTYPE_SVCCTX), OCI_SUCCESS);
  EXPECT_THAT(reinterpret_cast<char*>(text), HasSubstr("Release 1"));
}

TEST_P(Session, TheVersionIsCutToItsBuffer) {
  OraText text[8];
  ASSERT_EQ(OCIServerVersion(client.service, client.error, text, sizeof text, OCI_HTYPE_SVCCTX), OCI_SUCCESS);
  EXPECT_STREQ(reinterpret_cast<char*>(text), "MariaDB");
}

TEST_P(Session, AttachingTwiceIsAnError) {
  EXPECT_EQ(client.Attach("mariadb://localhost/x"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 24309);
}

TEST_P(Session, BeginningTwiceIsAnError) {
  EXPECT_EQ(client.Begin("a", "b"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 24313);
}

TEST_P(Session, TheUserNameCanBeReadBack) {
  char* name = nullptr;
  ub4 length = 0;
  ASSERT_EQ(OCIAttrGet(client.session, OCI_HTYPE_SESSION, &name, &length, OCI_ATTR_USERNAME, client.error),
            OCI_SUCCESS);
  EXPECT_EQ(std::string(name, length), AddressOf(GetParam()).user);
}

TEST_P(Session, EndingASessionCommits) {
  Table("T_END", "ID NUMBER");
  MustExec(client, "INSERT INTO T_END VALUES (1)");
  ASSERT_EQ(client.End(), OCI_SUCCESS);
  EXPECT_EQ(Value(*Another(), "SELECT COUNT(*) FROM T_END"), "1");
}

TEST_P(Session, FreeingASessionWithoutEndingItRollsBack) {
  Table("T_FREE", "ID NUMBER");
  {
    const auto other = Another();
    MustExec(*other, "INSERT INTO T_FREE VALUES (1)");
    OCIHandleFree(other->session, OCI_HTYPE_SESSION);
  }
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_FREE"), "0");
}

TEST_P(Session, ASessionHandleBeginsAgainAfterItsEnd) {
  ASSERT_EQ(client.End(), OCI_SUCCESS);
  EXPECT_EQ(Exec(client, "COMMIT"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1012);
  const Address address = AddressOf(GetParam());
  ASSERT_EQ(client.Begin(address.user, address.password), OCI_SUCCESS);
  EXPECT_EQ(Value(client, "SELECT 7 FROM DUAL"), "7");
}

TEST_P(Session, AStatementOfAnEarlierSessionRunsInTheNext) {
  Statement statement(client, "SELECT 5 FROM DUAL");
  sb4 value = 0;
  statement.Define(1, &value, sizeof value, SQLT_INT);
  ASSERT_EQ(statement.Execute(), OCI_SUCCESS);
  client.End();
  const Address address = AddressOf(GetParam());
  ASSERT_EQ(client.Begin(address.user, address.password), OCI_SUCCESS);
  value = 0;
  EXPECT_EQ(statement.Execute(), OCI_SUCCESS);
  EXPECT_EQ(value, 5);
}

TEST_P(Session, ManySessionsShareOneEnvironment) {
  void* session = nullptr;
  void* service = nullptr;
  ASSERT_EQ(OCIHandleAlloc(client.env, &session, OCI_HTYPE_SESSION, 0, nullptr), OCI_SUCCESS);
  ASSERT_EQ(OCIHandleAlloc(client.env, &service, OCI_HTYPE_SVCCTX, 0, nullptr), OCI_SUCCESS);
  const Address address = AddressOf(GetParam());
  const auto set = [&](const std::string& text, ub4 attribute) {
    OCIAttrSet(session, OCI_HTYPE_SESSION, const_cast<char*>(text.data()), static_cast<ub4>(text.size()),
               attribute, client.error);
  };
  set(address.user, OCI_ATTR_USERNAME);
  set(address.password, OCI_ATTR_PASSWORD);
  OCIAttrSet(service, OCI_HTYPE_SVCCTX, client.server, 0, OCI_ATTR_SERVER, client.error);
  const auto svc = static_cast<OCISvcCtx*>(service);
  ASSERT_EQ(
      OCISessionBegin(svc, client.error, static_cast<OCISession*>(session), OCI_CRED_RDBMS, OCI_DEFAULT),
      OCI_SUCCESS);
  OCIAttrSet(service, OCI_HTYPE_SVCCTX, session, 0, OCI_ATTR_SESSION, client.error);
  EXPECT_EQ(OCIPing(svc, client.error, OCI_DEFAULT), OCI_SUCCESS);
  EXPECT_EQ(OCISessionEnd(svc, client.error, nullptr, OCI_DEFAULT), OCI_SUCCESS);
}

// What goes wrong before there is a session.
class Connecting : public testing::Test {
 protected:
  // The error of attaching and beginning with this string, as the server's own account.
  Report Fail(const std::string& connect_string, const std::string& password = TheServer().Password()) {
    Client client;
    if (client.Attach(connect_string) != OCI_SUCCESS) return client.LastReport();
    const sword status = client.Begin(TheServer().User(), password);
    return status == OCI_SUCCESS ? Report{} : client.LastReport();
  }
  std::string Tcp(const std::string& options) { return TheServer().ConnectString() + options; }
};

TEST_F(Connecting, AWrongPasswordIsRefused) { EXPECT_EQ(Fail(Tcp(""), "wrong").code, 1017); }

TEST_F(Connecting, ASchemaThatTheAccountMayNotUseIsRefused) {
  EXPECT_EQ(Fail("mariadb://127.0.0.1:" + std::to_string(TheServer().Port()) + "/nosuch").code, 1031);
}

TEST_F(Connecting, NobodyListening) {
  const test_support::ReservedPort port;
  EXPECT_EQ(Fail("mariadb://127.0.0.1:" + std::to_string(port.Number()) + "/x").code, 12541);
  EXPECT_EQ(Fail("mariadb:///x?socket=/nonexistent/socket").code, 12541);
}

TEST_F(Connecting, ANonsenseStringFailsToAttach) {
  Client client;
  EXPECT_EQ(client.Attach("nonsense"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 12154);
  EXPECT_THAT(client.LastReport().text, StartsWith("ORA-12154: "));
}

TEST_F(Connecting, NoStringFailsToAttach) {
  Client client;
  EXPECT_EQ(OCIServerAttach(client.server, client.error, nullptr, 0, OCI_DEFAULT), OCI_ERROR);
  EXPECT_EQ(client.Code(), 12154);
}

TEST_F(Connecting, BeginningNeedsAnAttachedServer) {
  Client client;
  EXPECT_EQ(client.Begin("a", "b"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 24327);
  EXPECT_EQ(client.ServerStatus(), 0u);
  EXPECT_EQ(OCIServerDetach(client.server, client.error, OCI_DEFAULT), OCI_ERROR);
}

TEST_F(Connecting, AStatementNeedsASession) {
  Client client;
  EXPECT_EQ(Exec(client, "COMMIT"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1012);
}

TEST_F(Connecting, LoopbackIsPlainUnlessTlsIsAskedFor) {
  const auto cipher = [&](const std::string& options) {
    Client client;
    client.Connect(Tcp(options), TheServer().User(), TheServer().Password());
    return Value(client, kCipher);
  };
  EXPECT_EQ(cipher(""), "(null)");
  EXPECT_THAT(cipher("?tls=required"), HasSubstr("TLS_"));
  EXPECT_EQ(cipher("?tls=off"), "(null)");
}

TEST_F(Connecting, ACertificateOfTheRightAuthorityIsAccepted) {
  EXPECT_EQ(Fail(Tcp("?ssl-ca=" + TheServer().Authority().string())).code, 0);
}

TEST_F(Connecting, ACertificateOfAnotherAuthorityIsRefused) {
  EXPECT_EQ(Fail(Tcp("?ssl-ca=" + TheServer().OtherAuthority().string())).code, 29024);
}

TEST_F(Connecting, AnUnknownAuthorityIsRefusedWhenVerifying) {
  EXPECT_EQ(Fail(Tcp("?ssl-verify=1")).code, 29024);
}

TEST_F(Connecting, VerificationCanBeTurnedOff) {
  EXPECT_EQ(Fail(Tcp("?ssl-verify=0&ssl-ca=" + TheServer().OtherAuthority().string())).code, 0);
}

TEST_F(Connecting, AMissingCertificateFileIsAnError) {
  EXPECT_EQ(Fail(Tcp("?ssl-ca=/nonexistent")).code, 29024);
}

TEST_F(Connecting, AnAccountMayDemandTheClientsCertificate) {
  const auto begin = [&](const std::string& options) {
    Client client;
    client.Attach(Tcp(options));
    return client.Begin(TheServer().UserWithCertificate(), TheServer().Password());
  };
  EXPECT_EQ(begin("?tls=required"), OCI_ERROR);
  EXPECT_EQ(begin("?ssl-cert=" + TheServer().ClientCertificate().string() +
                  "&ssl-key=" + TheServer().ClientKey().string()),
            OCI_SUCCESS);
}

TEST_F(Connecting, APlainServerIsRefusedWhereTlsIsRequired) {
  test_support::TlsServer plain(test_support::Encryption::kNone);
  Client client;
  ASSERT_EQ(client.Attach(plain.ConnectString() + "?tls=required"), OCI_SUCCESS);
  EXPECT_EQ(client.Begin(plain.User(), plain.Password()), OCI_ERROR);
  EXPECT_EQ(client.Code(), 29024);
  EXPECT_THAT(client.LastReport().text, HasSubstr("TLS"));
}

}  // namespace
}  // namespace oci_test
