// SPDX-License-Identifier: Apache-2.0
// Environments, and handles coming and going.
#include "oci/mariadb/Environment.h"

#include "oci/mariadb/Guard.h"
#include "oci/mariadb/Library.h"
#include "oci/mariadb/Session.h"
#include "oci/mariadb/Statement.h"

namespace ocimaria {
namespace {

sword CreateEnvironment(const trace::CallNote* call, OCIEnv** result) {
  return Contained(call, [&]() -> sword {
    if (!result) return OCI_INVALID_HANDLE;
    UseClientLibrary();
    *result = static_cast<OCIEnv*>(Make<Environment>(nullptr).Token());
    return OCI_SUCCESS;
  });
}

// Null for a type that callers do not allocate.
std::shared_ptr<Handle> NewHandle(ub4 type) {
  switch (type) {
    case OCI_HTYPE_ERROR:
      return std::make_shared<ErrorHandle>();
    case OCI_HTYPE_SERVER:
      return std::make_shared<ServerHandle>();
    case OCI_HTYPE_SESSION:
      return std::make_shared<SessionHandle>();
    case OCI_HTYPE_SVCCTX:
      return std::make_shared<ServiceHandle>();
    case OCI_HTYPE_STMT:
      return std::make_shared<StatementHandle>();
    default:
      return nullptr;
  }
}

}  // namespace
}  // namespace ocimaria

using namespace ocimaria;

// Memory callbacks, user memory and character sets are accepted and have no effect: the library uses the
// process's heap and UTF-8.
extern "C" sword OCIEnvCreate(OCIEnv** envhpp, ub4 mode, void*, void* (*)(void*, size_t),
                              void* (*)(void*, void*, size_t), void (*)(void*, void*), size_t, void**) {
  return CreateEnvironment(OCI_CALL(envhpp, mode), envhpp);
}

extern "C" sword OCIEnvNlsCreate(OCIEnv** envhpp, ub4 mode, void*, void* (*)(void*, size_t),
                                 void* (*)(void*, void*, size_t), void (*)(void*, void*), size_t, void**, ub2,
                                 ub2) {
  return CreateEnvironment(OCI_CALL(envhpp, mode), envhpp);
}

extern "C" sword OCIHandleAlloc(const void* parenth, void** hndlpp, ub4 type, size_t, void**) {
  return Contained(OCI_CALL(parenth, type), [&]() -> sword {
    auto& environment = Need<Environment>(parenth);
    if (!hndlpp) return OCI_INVALID_HANDLE;
    auto handle = NewHandle(type);
    if (!handle) {
      environment.SetLastError(OraError(24316));
      return OCI_INVALID_HANDLE;
    }
    const Handle& made = *handle;
    Register(std::move(handle), parenth);
    *hndlpp = made.Token();
    return OCI_SUCCESS;
  });
}

extern "C" sword OCIHandleFree(void* hndlp, ub4 type) {
  return Contained(OCI_CALL(hndlp, type),
                   [&]() -> sword { return Unregister(hndlp, type) ? OCI_SUCCESS : OCI_INVALID_HANDLE; });
}

extern "C" sword OCIDescriptorFree(void* descp, ub4 type) {
  return Contained(OCI_CALL(descp, type), [&]() -> sword {
    return type == OCI_DTYPE_PARAM && Unregister(descp, type) ? OCI_SUCCESS : OCI_INVALID_HANDLE;
  });
}
