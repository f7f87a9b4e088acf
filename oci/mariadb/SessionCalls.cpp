// SPDX-License-Identifier: Apache-2.0
// Attaching, sessions, transactions, breaks: the exported calls that need no statement.
#include <algorithm>
#include <cstring>

#include "oci/mariadb/Breaker.h"
#include "oci/mariadb/Guard.h"
#include "oci/mariadb/ServerFailure.h"
#include "oci/mariadb/Session.h"
#include "oci/mariadb/TypeCache.h"

using namespace ocimaria;

namespace {

// A server that is gone when the session ends has rolled its work back already: nothing is left to report.
void EndSession(SessionHandle& session) {
  const auto connection = session.End();
  if (!connection) throw OraError(1012);
  CallScope scope(*connection);
  try {
    if (!connection->Lost()) connection->Commit();
  } catch (...) {
    connection->Close();
    throw;
  }
  connection->Close();
}

// The sessions that a service context or a server handle stands for; those that exist now.
std::vector<std::shared_ptr<Connection>> SessionsOf(void* hndlp) {
  if (const auto server = Share<ServerHandle>(hndlp)) return server->Connections();
  const auto service = Share<ServiceHandle>(hndlp);
  if (!service) throw InvalidHandle{};
  const auto session = service->Session();
  auto connection = session ? session->Current() : nullptr;
  return connection ? std::vector{std::move(connection)} : std::vector<std::shared_ptr<Connection>>{};
}

template <class Work>
sword OnConnection(const trace::CallNote* call, OCISvcCtx* svchp, OCIError* errhp, Work&& work) {
  return Guarded(call, errhp, [&](ErrorHandle&) -> sword {
    const auto connection = Need<ServiceHandle>(svchp).LiveConnection();
    CallScope scope(*connection);
    work(*connection);
    return OCI_SUCCESS;
  });
}

}  // namespace

// No round trip: the server is reached when the session begins.
extern "C" sword OCIServerAttach(OCIServer* srvhp, OCIError* errhp, const OraText* dblink, sb4 dblink_len,
                                 ub4) {
  return Guarded(OCI_CALL(srvhp, errhp, dblink, dblink_len), errhp, [&](ErrorHandle&) -> sword {
    auto& server = Need<ServerHandle>(srvhp);
    const bool given = dblink && dblink_len > 0;
    server.Attach({reinterpret_cast<const char*>(dblink), given ? static_cast<std::size_t>(dblink_len) : 0});
    return OCI_SUCCESS;
  });
}

extern "C" sword OCIServerDetach(OCIServer* srvhp, OCIError* errhp, ub4) {
  return Guarded(OCI_CALL(srvhp, errhp), errhp, [&](ErrorHandle&) -> sword {
    Need<ServerHandle>(srvhp).Detach();
    return OCI_SUCCESS;
  });
}

// A break does not end a connection attempt; the connect string's connect-timeout does.
extern "C" sword OCISessionBegin(OCISvcCtx* svchp, OCIError* errhp, OCISession* usrhp, ub4 credt, ub4 mode) {
  return Guarded(OCI_CALL(svchp, errhp, usrhp, credt, mode), errhp, [&](ErrorHandle&) -> sword {
    auto& service = Need<ServiceHandle>(svchp);
    auto& session = Need<SessionHandle>(usrhp);
    const auto server = service.Server();
    if (!server) throw OraError(24327);
    if (credt != OCI_CRED_RDBMS || mode != OCI_DEFAULT) throw OraError(24300);
    if (session.Current()) throw OraError(24313);
    auto connection =
        std::make_shared<Connection>(server->Target(), session.credentials, Connection::Purpose::kSession);
    server->AddConnection(connection);
    session.Begin(std::move(connection));
    ForgetTypes();  // other programs may have changed tables since
    return OCI_SUCCESS;
  });
}

// Commits what is open. Round trips: one.
extern "C" sword OCISessionEnd(OCISvcCtx* svchp, OCIError* errhp, OCISession* usrhp, ub4) {
  return Guarded(OCI_CALL(svchp, errhp, usrhp), errhp, [&](ErrorHandle&) -> sword {
    auto& service = Need<ServiceHandle>(svchp);
    if (usrhp) {
      EndSession(Need<SessionHandle>(usrhp));
    } else {
      const auto session = service.Session();
      if (!session) throw OraError(1012);
      EndSession(*session);
    }
    return OCI_SUCCESS;
  });
}

extern "C" sword OCITransCommit(OCISvcCtx* svchp, OCIError* errhp, ub4) {
  return OnConnection(OCI_CALL(svchp, errhp), svchp, errhp,
                      [](Connection& connection) { connection.Commit(); });
}

extern "C" sword OCITransRollback(OCISvcCtx* svchp, OCIError* errhp, ub4) {
  return OnConnection(OCI_CALL(svchp, errhp), svchp, errhp,
                      [](Connection& connection) { connection.Rollback(); });
}

extern "C" sword OCIPing(OCISvcCtx* svchp, OCIError* errhp, ub4) {
  return OnConnection(OCI_CALL(svchp, errhp), svchp, errhp,
                      [](Connection& connection) { connection.Ping(); });
}

// Returns at once; the interrupted call answers ORA-01013. Nothing on an idle session.
extern "C" sword OCIBreak(void* hndlp, OCIError* errhp) {
  return Contained(OCI_CALL(hndlp, errhp), [&]() -> sword {
    Need<ErrorHandle>(errhp);  // its record is left alone: the interrupted call may be about to write it
    const auto sessions = SessionsOf(hndlp);
    for (const auto& connection : sessions) Breaker::Shared()->Break(connection);
    return OCI_SUCCESS;
  });
}

// Takes back a break that has not reached the server.
extern "C" sword OCIReset(void* hndlp, OCIError* errhp) {
  return Contained(OCI_CALL(hndlp, errhp), [&]() -> sword {
    Need<ErrorHandle>(errhp);
    for (const auto& connection : SessionsOf(hndlp)) connection->Calls().CancelBreak();
    return OCI_SUCCESS;
  });
}

extern "C" sword OCIServerVersion(void* hndlp, OCIError* errhp, OraText* bufp, ub4 bufsz, ub1 hndltype) {
  return Guarded(OCI_CALL(hndlp, errhp, bufsz, hndltype), errhp, [&](ErrorHandle&) -> sword {
    if (hndltype != OCI_HTYPE_SVCCTX && hndltype != OCI_HTYPE_SERVER) throw InvalidHandle{};
    const auto sessions = SessionsOf(hndlp);
    if (sessions.empty()) throw OraError(1012);
    if (!bufp || bufsz == 0) throw OraError(24323);
    CallScope scope(*sessions.front());
    const std::string text = "MariaDB Server Release " + sessions.front()->ServerVersion();
    const std::size_t length = std::min<std::size_t>(text.size(), bufsz - 1);
    std::memcpy(bufp, text.data(), length);
    bufp[length] = 0;
    return OCI_SUCCESS;
  });
}

// The release of the call interface that this library follows, not its own version.
extern "C" void OCIClientVersion(sword* major, sword* minor, sword* update, sword* patch,
                                 sword* port_update) {
  const struct {
    sword* to;
    sword value;
  } parts[] = {{major, 19}, {minor, 0}, {update, 0}, {patch, 0}, {port_update, 0}};
  for (const auto& part : parts)
    if (part.to) *part.to = part.value;
}
