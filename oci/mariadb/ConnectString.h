// SPDX-License-Identifier: Apache-2.0
// The connect string that OCIServerAttach takes:
//
//   [mariadb:]//[host[:port]]/schema[?name=value[&name=value]…]
//
// The scheme may be written in any case or left out with or without its slashes ("host:3307/schema"); an IPv6
// address stands in brackets. Host, schema and values may be percent-encoded. Without a host the server is
// reached by a unix socket, with one by TCP (default port 3306). Parameters:
//
//   socket=PATH            unix socket; default: the one that Connector/C was built with
//   tls=required|off       default: off on a socket and to this machine's own loopback addresses, required
//                          to any other host; any ssl- parameter makes it required
//   ssl-ca=FILE            certificate authority; the server's certificate is then verified
//   ssl-cert=FILE, ssl-key=FILE   the client's own certificate
//   ssl-verify=0|1         whether the server's certificate and host name are verified; default: 1 with
//                          ssl-ca
//   connect-timeout=SECONDS   how long a step of connecting may take: 1 to 3600; default 10
//   link-timeout=SECONDS   after how long without a sign of life from the other end of a TCP connection it
//                          counts as lost: 1 to 3600; default 60. A statement may run longer than that
//
// Where TLS is required a connection that the server answers in plain text is refused. User and password come
// from the session handle, never from here. Pure functions, any thread.
#pragma once

#include <string>
#include <string_view>

namespace ocimaria {

struct ConnectTarget {
  std::string host;  // empty: unix socket
  unsigned port = 3306;
  std::string socket;  // empty: the built-in default
  std::string schema;
  bool tls_required = false;
  bool verify_certificate = false;
  std::string ssl_ca, ssl_cert, ssl_key;
  unsigned connect_timeout = 10;  // seconds
  unsigned link_timeout = 60;     // seconds

  std::string ServerName() const;  // "host:port" or "socket PATH": for messages and as a key
};

// Throws OraError 12154 with a text that names what is wrong and what would be right.
ConnectTarget ParseConnectString(std::string_view text);

}  // namespace ocimaria
