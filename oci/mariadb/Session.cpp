// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Session.h"

#include <algorithm>

#include "oci/mariadb/OraError.h"

namespace ocimaria {

void ServerHandle::Attach(std::string_view connect_string) {
  auto target = ParseConnectString(connect_string);
  std::lock_guard lock(m_mutex);
  if (m_target) throw OraError(24309);
  m_target = std::move(target);
  m_connections.clear();
}

void ServerHandle::Detach() {
  std::lock_guard lock(m_mutex);
  if (!m_target) throw OraError(24324);
  m_target.reset();
}

ConnectTarget ServerHandle::Target() {
  std::lock_guard lock(m_mutex);
  if (!m_target) throw OraError(24327);
  return *m_target;
}

void ServerHandle::AddConnection(const std::shared_ptr<Connection>& connection) {
  std::lock_guard lock(m_mutex);
  std::erase_if(m_connections, [](const auto& known) { return known.expired(); });
  m_connections.push_back(connection);
}

std::vector<std::shared_ptr<Connection>> ServerHandle::Connections() {
  std::lock_guard lock(m_mutex);
  std::vector<std::shared_ptr<Connection>> live;
  for (const auto& known : m_connections)
    if (auto connection = known.lock()) live.push_back(std::move(connection));
  return live;
}

ub4 ServerHandle::Status() {
  const auto live = Connections();
  std::lock_guard lock(m_mutex);
  return m_target && std::ranges::none_of(live, [](const auto& connection) { return connection->Lost(); });
}

SessionHandle::~SessionHandle() {
  if (!m_connection) return;
  CallScope scope(*m_connection);
  m_connection->Close();
}

void SessionHandle::Begin(std::shared_ptr<Connection> connection) {
  std::lock_guard lock(m_mutex);
  m_connection = std::move(connection);
}

std::shared_ptr<Connection> SessionHandle::Current() {
  std::lock_guard lock(m_mutex);
  return m_connection;
}

std::shared_ptr<Connection> SessionHandle::End() {
  std::lock_guard lock(m_mutex);
  return std::move(m_connection);
}

void ServiceHandle::SetServer(std::shared_ptr<ServerHandle> server) {
  std::lock_guard lock(m_mutex);
  m_server = std::move(server);
}

void ServiceHandle::SetSession(std::shared_ptr<SessionHandle> session) {
  std::lock_guard lock(m_mutex);
  m_session = std::move(session);
}

std::shared_ptr<ServerHandle> ServiceHandle::Server() {
  std::lock_guard lock(m_mutex);
  return m_server;
}

std::shared_ptr<SessionHandle> ServiceHandle::Session() {
  std::lock_guard lock(m_mutex);
  return m_session;
}

std::shared_ptr<Connection> ServiceHandle::LiveConnection() {
  std::lock_guard lock(m_mutex);
  auto connection = m_session ? m_session->Current() : nullptr;
  if (!connection) throw OraError(1012);
  return connection;
}

}  // namespace ocimaria
