// SPDX-License-Identifier: Apache-2.0
// Server, session and service context. Attaching reads the connect string, beginning a session connects; the
// session owns its connection until it ends or is freed. A service context only refers to both.
// One thread at a time each, except that OCIBreak reads a service context or a server from any thread.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "oci/mariadb/Connection.h"
#include "oci/mariadb/Handles.h"

namespace ocimaria {

class ServerHandle : public Handle {
 public:
  static constexpr ub4 kType = OCI_HTYPE_SERVER;
  ServerHandle() : Handle(kType) {}

  void Attach(std::string_view connect_string);  // throws OraError
  void Detach();                                 // throws OraError when not attached
  ConnectTarget Target();                        // throws OraError 24327 when not attached

  // Sessions of this server, for OCIBreak and the server's status.
  void AddConnection(const std::shared_ptr<Connection>& connection);
  std::vector<std::shared_ptr<Connection>> Connections();

  // OCI_ATTR_SERVER_STATUS: 1 while attached and no session has found its connection gone.
  ub4 Status();

 private:
  std::mutex m_mutex;
  std::optional<ConnectTarget> m_target;
  std::vector<std::weak_ptr<Connection>> m_connections;
};

class SessionHandle : public Handle {
 public:
  static constexpr ub4 kType = OCI_HTYPE_SESSION;
  SessionHandle() : Handle(kType) {}
  ~SessionHandle() override;  // a session that was not ended is rolled back

  Credentials credentials;

  void Begin(std::shared_ptr<Connection> connection);
  std::shared_ptr<Connection> Current();  // null outside of Begin and End
  std::shared_ptr<Connection> End();      // the connection that was given up, or null

 private:
  std::mutex m_mutex;
  std::shared_ptr<Connection> m_connection;
};

class ServiceHandle : public Handle {
 public:
  static constexpr ub4 kType = OCI_HTYPE_SVCCTX;
  ServiceHandle() : Handle(kType) {}

  void SetServer(std::shared_ptr<ServerHandle> server);
  void SetSession(std::shared_ptr<SessionHandle> session);
  std::shared_ptr<ServerHandle> Server();
  std::shared_ptr<SessionHandle> Session();

  // The connection of a session that has begun. Throws OraError 1012.
  std::shared_ptr<Connection> LiveConnection();

 private:
  std::mutex m_mutex;
  std::shared_ptr<ServerHandle> m_server;
  std::shared_ptr<SessionHandle> m_session;
};

}  // namespace ocimaria
