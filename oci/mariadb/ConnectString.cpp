// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/ConnectString.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <optional>

#include "oci/mariadb/OraError.h"

namespace ocimaria {
namespace {

[[noreturn]] void Fail(const std::string& reason) {
  throw OraError::WithText(12154, "TNS:could not resolve the connect identifier specified: " + reason);
}

bool IsControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }

// The text as a message shows it, cut between two characters where it is long.
std::string Quoted(std::string_view text) {
  std::size_t length = std::min<std::size_t>(text.size(), 60);
  while (length < text.size() && length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
    --length;
  std::string shown(text.substr(0, length));
  std::ranges::replace_if(shown, IsControl, '?');
  return "\"" + shown + (length < text.size() ? "…\"" : "\"");
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return std::tolower(c); });
  return lower;
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string Decode(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      decoded += text[i];
      continue;
    }
    const int high = i + 2 < text.size() ? HexDigit(text[i + 1]) : -1;
    const int low = i + 2 < text.size() ? HexDigit(text[i + 2]) : -1;
    if (high < 0 || low < 0) Fail(Quoted(text) + " has a % without two hexadecimal digits after it");
    decoded += static_cast<char>(high * 16 + low);
    if (IsControl(decoded.back())) Fail(Quoted(text) + " holds a control character");
    i += 2;
  }
  return decoded;
}

unsigned Number(std::string_view text, std::string_view name, unsigned least, unsigned most) {
  unsigned value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || value < least || value > most)
    Fail(std::string(name) + " is " + Quoted(text) + "; it must be a number from " + std::to_string(least) +
         " to " + std::to_string(most));
  return value;
}

bool Flag(std::string_view text, std::string_view name) {
  if (text != "0" && text != "1") Fail(std::string(name) + " is " + Quoted(text) + "; it must be 0 or 1");
  return text == "1";
}

// What was said about TLS; the defaults depend on all of it.
struct TlsWishes {
  std::optional<bool> required;
  std::optional<bool> verify;
};

using Setter = void (*)(ConnectTarget&, TlsWishes&, std::string value);

void SetTls(ConnectTarget&, TlsWishes& tls, std::string value) {
  if (value != "required" && value != "off") Fail("tls is " + Quoted(value) + "; it must be required or off");
  tls.required = value == "required";
}

struct Parameter {
  std::string_view name;
  Setter set;
};

constexpr std::array kParameters{
    Parameter{"connect-timeout",
              [](ConnectTarget& t, TlsWishes&, std::string v) {
                t.connect_timeout = Number(v, "connect-timeout", 1, 3600);
              }},
    Parameter{"link-timeout", [](ConnectTarget& t, TlsWishes&,
                                 std::string v) { t.link_timeout = Number(v, "link-timeout", 1, 3600); }},
    Parameter{"socket", [](ConnectTarget& t, TlsWishes&, std::string v) { t.socket = std::move(v); }},
    Parameter{"ssl-ca", [](ConnectTarget& t, TlsWishes&, std::string v) { t.ssl_ca = std::move(v); }},
    Parameter{"ssl-cert", [](ConnectTarget& t, TlsWishes&, std::string v) { t.ssl_cert = std::move(v); }},
    Parameter{"ssl-key", [](ConnectTarget& t, TlsWishes&, std::string v) { t.ssl_key = std::move(v); }},
    Parameter{"ssl-verify",
              [](ConnectTarget&, TlsWishes& tls, std::string v) { tls.verify = Flag(v, "ssl-verify"); }},
    Parameter{"tls", SetTls},
};

std::string KnownParameters() {
  std::string names;
  for (const Parameter& parameter : kParameters) (names += names.empty() ? "" : ", ") += parameter.name;
  return names;
}

void SetParameter(ConnectTarget& target, TlsWishes& tls, std::string_view item) {
  const auto equals = item.find('=');
  const std::string_view name = item.substr(0, equals);
  const auto known = std::ranges::find(kParameters, name, &Parameter::name);
  if (known == kParameters.end())
    Fail("unknown parameter " + Quoted(name) + "; known are " + KnownParameters());
  if (equals == item.npos || equals + 1 == item.size()) Fail("parameter " + Quoted(name) + " has no value");
  known->set(target, tls, Decode(item.substr(equals + 1)));
}

void SetParameters(ConnectTarget& target, TlsWishes& tls, std::string_view query) {
  while (!query.empty()) {
    const auto end = query.find('&');
    if (const auto item = query.substr(0, end); !item.empty()) SetParameter(target, tls, item);
    query.remove_prefix(end == query.npos ? query.size() : end + 1);
  }
}

// "host", "host:port", "[address]", "[address]:port" or nothing.
void SetAuthority(ConnectTarget& target, std::string_view authority) {
  std::string_view port;
  if (authority.starts_with('[')) {
    const auto close = authority.find(']');
    if (close == authority.npos) Fail(Quoted(authority) + " has no closing bracket");
    target.host = Decode(authority.substr(1, close - 1));
    if (target.host.empty()) Fail("there is no address in the brackets");
    port = authority.substr(close + 1);
    if (!port.empty() && !port.starts_with(':')) Fail(Quoted(port) + " follows the closing bracket");
  } else {
    const auto colon = authority.find(':');
    target.host = Decode(authority.substr(0, colon));
    if (colon != authority.npos) port = authority.substr(colon);
  }
  if (port.empty()) return;
  if (target.host.empty()) Fail("a port needs a host in front of it");
  target.port = Number(port.substr(1), "the port", 1, 65535);
}

bool IsLoopback(const std::string& host) {
  const std::string name = Lower(host);
  return name == "localhost" || name == "::1" || name.starts_with("127.");
}

void SettleTls(ConnectTarget& target, const TlsWishes& tls) {
  const bool any_ssl = !target.ssl_ca.empty() || !target.ssl_cert.empty() || !target.ssl_key.empty() ||
                       tls.verify.value_or(false);
  if (any_ssl && tls.required == false) Fail("tls=off contradicts the ssl- parameters");
  if (any_ssl && target.host.empty()) Fail("TLS is for TCP: give a host with the ssl- parameters");
  if (target.host.empty() && tls.required.value_or(false))
    Fail("TLS is for TCP: give a host with tls=required");
  if (target.ssl_cert.empty() != target.ssl_key.empty()) Fail("ssl-cert and ssl-key go together");
  target.tls_required = tls.required.value_or(any_ssl || !(target.host.empty() || IsLoopback(target.host)));
  target.verify_certificate = tls.verify.value_or(!target.ssl_ca.empty());
}

// The text without its scheme and slashes. A first part with another scheme is refused here.
std::string_view WithoutScheme(std::string_view text) {
  const auto slashes = text.find("//");
  if (slashes == 0) return text.substr(2);
  if (slashes == text.npos || text.find('/') < slashes || text.find('?') < slashes) return text;
  if (Lower(text.substr(0, slashes)) != "mariadb:")
    Fail(Quoted(text.substr(0, slashes + 2)) +
         " is not a scheme of this library; write mariadb://host/schema");
  return text.substr(slashes + 2);
}

}  // namespace

std::string ConnectTarget::ServerName() const {
  if (!host.empty()) return host + ":" + std::to_string(port);
  return "socket " + (socket.empty() ? std::string("(default)") : socket);
}

ConnectTarget ParseConnectString(std::string_view text) {
  if (std::ranges::any_of(text, [](char c) { return c == ' ' || IsControl(c); }))
    Fail("it holds blanks or control characters; write a blank as %20");
  std::string_view rest = WithoutScheme(text);
  const auto question = rest.find('?');
  const std::string_view query = question == rest.npos ? "" : rest.substr(question + 1);
  rest = rest.substr(0, question);
  // Before any message quotes the text: it may hold a password.
  if (rest.find('@') != rest.npos) Fail("user and password belong to the session, not to the connect string");
  const auto slash = rest.find('/');
  if (slash == rest.npos) Fail(Quoted(text) + " names no schema; write mariadb://host/schema");

  ConnectTarget target;
  TlsWishes tls;
  SetAuthority(target, rest.substr(0, slash));
  target.schema = Decode(rest.substr(slash + 1));
  if (target.schema.empty()) Fail(Quoted(text) + " names no schema; write mariadb://host/schema");
  if (target.schema.find('/') != target.schema.npos) Fail(Quoted(target.schema) + " is not a schema name");
  SetParameters(target, tls, query);
  if (!target.host.empty() && !target.socket.empty()) Fail("give a host or a socket, not both");
  SettleTls(target, tls);
  return target;
}

}  // namespace ocimaria
