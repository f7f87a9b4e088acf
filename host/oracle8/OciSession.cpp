// SPDX-License-Identifier: Apache-2.0
#include "oracle8/OciSession.h"

#include <array>
#include <string>

namespace oracle8 {
namespace {

constexpr ub2 kUtf8 = 873;  // AL32UTF8, whatever NLS_LANG says: LKString's narrow text is UTF-8

Handle<OCIEnv> CreateEnvironment() {
  OCIEnv* environment = nullptr;
  const sword status = OCIEnvNlsCreate(&environment, OCI_THREADED, nullptr, nullptr, nullptr, nullptr, 0,
                                       nullptr, kUtf8, kUtf8);
  Handle<OCIEnv> owned(environment);  // a failed call may leave one behind
  Check(status, L"create the environment");
  return owned;
}

void SetHandle(OCISvcCtx* service, void* handle, ub4 attribute, OCIError* error, const wchar_t* action) {
  Check(OCIAttrSet(service, OCI_HTYPE_SVCCTX, handle, 0, attribute, error), action);
}

void SetText(OCISession* session, const LKString& value, ub4 attribute, OCIError* error,
             const wchar_t* action) {
  std::string text = value.ToChar();
  Check(OCIAttrSet(session, OCI_HTYPE_SESSION, text.data(), static_cast<ub4>(text.size()), attribute, error),
        action);
}

}  // namespace

OciSession::OciSession()
    : m_environment(CreateEnvironment()),
      m_error(AllocateHandle<OCIError>(Environment())),
      m_breakError(AllocateHandle<OCIError>(Environment())) {}

OciSession::~OciSession() {
  if (m_begun && !Failed(OCITransRollback(Service(), Error(), OCI_DEFAULT)))
    OCISessionEnd(Service(), Error(), m_session.get(), OCI_DEFAULT);
  if (m_attached) OCIServerDetach(m_server.get(), Error(), OCI_DEFAULT);
}

void OciSession::Attach(const LKString& server) {
  m_server = AllocateHandle<OCIServer>(Environment());
  const std::string text = server.ToChar();
  CheckError(OCIServerAttach(m_server.get(), Error(), reinterpret_cast<const OraText*>(text.data()),
                             static_cast<sb4>(text.size()), OCI_DEFAULT),
             L"attach to the server");
  m_attached = true;
  m_service = AllocateHandle<OCISvcCtx>(Environment());
  SetHandle(Service(), m_server.get(), OCI_ATTR_SERVER, Error(), L"set the server");
}

LKString OciSession::Begin(const LKString& user, const LKString& password) {
  m_session = AllocateHandle<OCISession>(Environment());
  SetText(m_session.get(), user, OCI_ATTR_USERNAME, Error(), L"set the user name");
  SetText(m_session.get(), password, OCI_ATTR_PASSWORD, Error(), L"set the password");
  const sword status = OCISessionBegin(Service(), Error(), m_session.get(), OCI_CRED_RDBMS, OCI_DEFAULT);
  CheckError(status, L"begin the session");
  m_begun = true;
  LKString warning = Failed(status) ? ReadError(status, Error()).text : LKString();
  SetHandle(Service(), m_session.get(), OCI_ATTR_SESSION, Error(), L"set the session");
  return warning;
}

void OciSession::Close() {
  if (m_begun) {
    m_begun = false;  // kept off even when the rollback fails: ending the session then would commit
    Check(OCITransRollback(Service(), Error(), OCI_DEFAULT), L"roll back");
    Check(OCISessionEnd(Service(), Error(), m_session.get(), OCI_DEFAULT), L"end the session");
  }
  if (m_attached) {
    m_attached = false;
    Check(OCIServerDetach(m_server.get(), Error(), OCI_DEFAULT), L"detach from the server");
  }
}

void OciSession::Commit() { Check(OCITransCommit(Service(), Error(), OCI_DEFAULT), L"commit"); }

void OciSession::Rollback() { Check(OCITransRollback(Service(), Error(), OCI_DEFAULT), L"roll back"); }

LKString OciSession::ServerVersion() {
  std::array<OraText, 512> buffer{};
  Check(
      OCIServerVersion(Service(), Error(), buffer.data(), static_cast<ub4>(buffer.size()), OCI_HTYPE_SVCCTX),
      L"read the server version");
  buffer.back() = 0;
  const std::string text(reinterpret_cast<const char*>(buffer.data()));
  return LKString(text.c_str(), static_cast<int>(text.size()));
}

}  // namespace oracle8
