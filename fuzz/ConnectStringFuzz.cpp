// SPDX-License-Identifier: Apache-2.0
// Any text as a connect string.
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

#include "Require.h"
#include "oci/mariadb/ConnectString.h"
#include "oci/mariadb/OraError.h"

namespace fuzz {
namespace {

using namespace ocimaria;

constexpr std::size_t kLongestMessage = 500;

std::string Encoded(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    encoded += {'%', kDigits[byte / 16], kDigits[byte % 16]};
  }
  return encoded;
}

std::string Parameter(std::string_view name, const std::string& value) {
  return value.empty() ? "" : "&" + std::string(name) + "=" + Encoded(value);
}

// The target in full, every default spelled out.
std::string Spelled(const ConnectTarget& target) {
  std::string text = "mariadb://";
  if (!target.host.empty()) text += Encoded(target.host) + ":" + std::to_string(target.port);
  text += "/" + Encoded(target.schema) + "?connect-timeout=" + std::to_string(target.connect_timeout) +
          Parameter("socket", target.socket) + Parameter("ssl-ca", target.ssl_ca) +
          Parameter("ssl-cert", target.ssl_cert) + Parameter("ssl-key", target.ssl_key);
  if (target.host.empty()) return text;
  return text + "&tls=" + (target.tls_required ? "required" : "off") +
         "&ssl-verify=" + (target.verify_certificate ? "1" : "0");
}

auto Members(const ConnectTarget& t) {
  return std::tie(t.host, t.port, t.socket, t.schema, t.tls_required, t.verify_certificate, t.ssl_ca,
                  t.ssl_cert, t.ssl_key, t.connect_timeout);
}

void RequireTarget(const ConnectTarget& target) {
  Require(!target.schema.empty() && target.schema.find('/') == target.schema.npos, "a schema is named");
  Require(target.host.empty() || target.socket.empty(), "a server is reached in one way");
  Require(target.port >= 1 && target.port <= 65535, "the port is one");
  Require(target.connect_timeout >= 1 && target.connect_timeout <= 3600, "waiting has an end");
  Require(!target.verify_certificate || target.tls_required, "a certificate is verified over TLS only");
  Require(target.ssl_cert.empty() == target.ssl_key.empty(), "a certificate has its key");
  RequireOneLine(target.ServerName(), 5000);
  const ConnectTarget again = ParseConnectString(Spelled(target));
  Require(Members(again) == Members(target), "a target spelled out in full is the same target");
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace fuzz;
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::optional<ConnectTarget> target;
  try {
    target = ParseConnectString(text);
  } catch (const OraError& error) {
    Require(error.Code() == 12154, "a connect string that is refused has one number");
    RequireOneLine(error.Text(), kLongestMessage);
  }
  if (target) RequireTarget(*target);
  return 0;
}
