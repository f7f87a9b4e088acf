// SPDX-License-Identifier: Apache-2.0
// OciSession is one session and all the handles it needs, from its opening to its destructor. Ending a
// session commits in OCI, so what is open is rolled back first, on every path. Used by one thread, except
// Break.
#pragma once

#include "oracle8/OciHandle.h"

namespace oracle8 {

class OciSession {
 public:
  OciSession();   // environment and error handles; throws OciFailure
  ~OciSession();  // rolls back, ends, detaches, as far as that is still to do; reports nothing
  OciSession(const OciSession&) = delete;
  OciSession& operator=(const OciSession&) = delete;

  // Each throws OciFailure.
  void Attach(const LKString& server);
  // What the server has to say on success, e.g. that the password expires soon; mostly nothing.
  LKString Begin(const LKString& user, const LKString& password);
  void Close();  // as the destructor; stops at the first failure and leaves the rest to it
  void Commit();
  void Rollback();
  LKString ServerVersion();

  // Any thread. A failure's record is in BreakError, which no other call uses.
  sword Break() { return OCIBreak(m_service.get(), m_breakError.get()); }

  OCIEnv* Environment() const { return m_environment.get(); }
  OCIError* Error() const { return m_error.get(); }
  OCIError* BreakError() const { return m_breakError.get(); }
  OCISvcCtx* Service() const { return m_service.get(); }

 private:
  Handle<OCIEnv> m_environment;
  Handle<OCIError> m_error;
  Handle<OCIError> m_breakError;
  Handle<OCIServer> m_server;
  Handle<OCISvcCtx> m_service;
  Handle<OCISession> m_session;
  bool m_attached = false;
  bool m_begun = false;
};

}  // namespace oracle8
