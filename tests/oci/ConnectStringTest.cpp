// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/ConnectString.h"

#include <gmock/gmock.h>

#include "oci/mariadb/OraError.h"

namespace ocimaria {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// The text of the error, "" when the string is accepted.
std::string Problem(std::string_view text) {
  try {
    ParseConnectString(text);
    return "";
  } catch (const OraError& error) {
    EXPECT_EQ(error.Code(), 12154);
    return error.Text();
  }
}

TEST(ConnectString, NamesHostPortAndSchema) {
  const ConnectTarget target = ParseConnectString("mariadb://db.example:3307/bench");
  EXPECT_EQ(target.host, "db.example");
  EXPECT_EQ(target.port, 3307u);
  EXPECT_EQ(target.schema, "bench");
  EXPECT_EQ(target.socket, "");
  EXPECT_EQ(target.connect_timeout, 10u);
  EXPECT_EQ(target.ServerName(), "db.example:3307");
}

TEST(ConnectString, ThePortDefaultsTo3306) { EXPECT_EQ(ParseConnectString("mariadb://h/s").port, 3306u); }

TEST(ConnectString, TheSchemeIsOptionalAndOfAnyCase) {
  for (const char* text : {"MariaDB://h:1/s", "mariadb://h:1/s", "MARIADB://h:1/s", "//h:1/s", "h:1/s"}) {
    EXPECT_EQ(ParseConnectString(text).host, "h") << text;
    EXPECT_EQ(ParseConnectString(text).schema, "s") << text;
  }
}

TEST(ConnectString, WithoutAHostASocketIsUsed) {
  const ConnectTarget target = ParseConnectString("mariadb:///s?socket=/run/a.sock");
  EXPECT_EQ(target.host, "");
  EXPECT_EQ(target.socket, "/run/a.sock");
  EXPECT_FALSE(target.tls_required);
  EXPECT_EQ(target.ServerName(), "socket /run/a.sock");
}

TEST(ConnectString, AnIpv6AddressStandsInBrackets) {
  const ConnectTarget target = ParseConnectString("//[2001:db8::1]:3310/s");
  EXPECT_EQ(target.host, "2001:db8::1");
  EXPECT_EQ(target.port, 3310u);
  EXPECT_EQ(ParseConnectString("//[::1]/s").host, "::1");
}

TEST(ConnectString, PartsMayBePercentEncoded) {
  const ConnectTarget target = ParseConnectString("mariadb:///a%20c?socket=/x%26y%3d");
  EXPECT_EQ(target.schema, "a c");
  EXPECT_EQ(target.socket, "/x&y=");
}

TEST(ConnectString, TlsIsRequiredToOtherMachinesOnly) {
  EXPECT_TRUE(ParseConnectString("//db.example/s").tls_required);
  EXPECT_FALSE(ParseConnectString("//localhost/s").tls_required);
  EXPECT_FALSE(ParseConnectString("//127.0.0.1/s").tls_required);
  EXPECT_FALSE(ParseConnectString("//[::1]/s").tls_required);
  EXPECT_FALSE(ParseConnectString("//db.example/s?tls=off").tls_required);
  EXPECT_TRUE(ParseConnectString("//localhost/s?tls=required").tls_required);
}

TEST(ConnectString, AnySslParameterRequiresTls) {
  EXPECT_TRUE(ParseConnectString("//localhost/s?ssl-ca=/ca").tls_required);
  EXPECT_TRUE(ParseConnectString("//localhost/s?ssl-verify=1").tls_required);
  EXPECT_TRUE(ParseConnectString("//localhost/s?ssl-cert=/c&ssl-key=/k").tls_required);
}

TEST(ConnectString, AnAuthorityMeansVerificationUnlessItIsTurnedOff) {
  EXPECT_TRUE(ParseConnectString("//h/s?ssl-ca=/ca").verify_certificate);
  EXPECT_FALSE(ParseConnectString("//h/s?ssl-ca=/ca&ssl-verify=0").verify_certificate);
  EXPECT_FALSE(ParseConnectString("//h/s").verify_certificate);
}

TEST(ConnectString, TheTimeoutsAreTaken) {
  EXPECT_EQ(ParseConnectString("//h/s").connect_timeout, 10u);
  EXPECT_EQ(ParseConnectString("//h/s?connect-timeout=3").connect_timeout, 3u);
  EXPECT_EQ(ParseConnectString("//h/s").link_timeout, 60u);
  EXPECT_EQ(ParseConnectString("//h/s?link-timeout=7").link_timeout, 7u);
}

// An error text may end in a log; a password that was put into the connect string must not.
TEST(ConnectString, NoProblemRepeatsAPassword) {
  for (const char* text :
       {"mariadb://u:secret@h", "u/secret@h", "u:secret@h", "//u:secret@h/", "//h/u/secret@h"})
    EXPECT_THAT(Problem(text), AllOf(HasSubstr("belong to the session"), Not(HasSubstr("secret"))));
}

TEST(ConnectString, EveryProblemIsNamed) {
  EXPECT_THAT(Problem(""), HasSubstr("names no schema"));
  EXPECT_THAT(Problem("nonsense"), HasSubstr("names no schema"));
  EXPECT_THAT(Problem("//h/"), HasSubstr("names no schema"));
  EXPECT_THAT(Problem("//h/a/b"), HasSubstr("\"a/b\" is not a schema name"));
  EXPECT_THAT(Problem("oracle://h/s"), HasSubstr("\"oracle://\" is not a scheme"));
  EXPECT_THAT(Problem("//u:p@h/s"), HasSubstr("belong to the session"));
  EXPECT_THAT(Problem("//h:0/s"), HasSubstr("from 1 to 65535"));
  EXPECT_THAT(Problem("//h:65536/s"), HasSubstr("from 1 to 65535"));
  EXPECT_THAT(Problem("//h:x/s"), HasSubstr("the port is \"x\""));
  EXPECT_THAT(Problem("//h:/s"), HasSubstr("the port is \"\""));
  EXPECT_THAT(Problem("//:1/s"), HasSubstr("a port needs a host"));
  EXPECT_THAT(Problem("//[::1/s"), HasSubstr("no closing bracket"));
  EXPECT_THAT(Problem("//[::1]x/s"), HasSubstr("follows the closing bracket"));
  EXPECT_THAT(Problem("//[]/s"), HasSubstr("no address in the brackets"));
  EXPECT_THAT(Problem("//h/s?sockett=/x"),
              HasSubstr("unknown parameter \"sockett\"; known are connect-timeout, "));
  EXPECT_THAT(Problem("//h/s?socket"), HasSubstr("\"socket\" has no value"));
  EXPECT_THAT(Problem("//h/s?socket="), HasSubstr("\"socket\" has no value"));
  EXPECT_THAT(Problem("//h/s?socket=/x"), HasSubstr("a host or a socket, not both"));
  EXPECT_THAT(Problem("//h/s?tls=maybe"), HasSubstr("required or off"));
  EXPECT_THAT(Problem("//h/s?tls=off&ssl-ca=/x"), HasSubstr("tls=off contradicts"));
  EXPECT_THAT(Problem("///s?ssl-ca=/x"), HasSubstr("TLS is for TCP"));
  EXPECT_THAT(Problem("///s?tls=required"), HasSubstr("TLS is for TCP"));
  EXPECT_THAT(Problem("//h/s?ssl-cert=/x"), HasSubstr("go together"));
  EXPECT_THAT(Problem("//h/s?ssl-verify=yes"), HasSubstr("must be 0 or 1"));
  EXPECT_THAT(Problem("//h/s?connect-timeout=0"), HasSubstr("from 1 to 3600"));
  EXPECT_THAT(Problem("//h/s?link-timeout=3601"), HasSubstr("link-timeout is \"3601\"; it must be a number"));
  EXPECT_THAT(Problem("//h/s%4"), HasSubstr("hexadecimal"));
  EXPECT_THAT(Problem("//h/s%zz"), HasSubstr("hexadecimal"));
  EXPECT_THAT(Problem("//h/s%00"), HasSubstr("control character"));
  EXPECT_THAT(Problem("//h%0A/s"), HasSubstr("\"h%0A\" holds a control character"));
  EXPECT_THAT(Problem("//h/s\x1b"), HasSubstr("blanks or control characters"));
  EXPECT_THAT(Problem("//h/s?" + std::string(59, 'x') + "\xC3\xBC"),
              HasSubstr("parameter \"" + std::string(59, 'x') + "…\";"));
  EXPECT_THAT(Problem("//h /s"), HasSubstr("blanks or control characters"));
  EXPECT_THAT(Problem("//h/s\n"), HasSubstr("blanks or control characters"));
  EXPECT_THAT(Problem(std::string_view("//h\0/s", 6)), HasSubstr("blanks or control characters"));
}

}  // namespace
}  // namespace ocimaria
