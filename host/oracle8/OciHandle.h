// SPDX-License-Identifier: Apache-2.0
// Handle<H> owns one OCI handle. The traits tie each handle type to its number, so that allocation and free
// cannot disagree; a type without them does not compile.
#pragma once

#include <oci.h>

#include <memory>

#include "oracle8/OciError.h"

namespace oracle8 {

template <class H>
struct HandleType;  // no default on purpose
template <>
struct HandleType<OCIEnv> {
  static constexpr ub4 value = OCI_HTYPE_ENV;
};
template <>
struct HandleType<OCIError> {
  static constexpr ub4 value = OCI_HTYPE_ERROR;
};
template <>
struct HandleType<OCIServer> {
  static constexpr ub4 value = OCI_HTYPE_SERVER;
};
template <>
struct HandleType<OCISvcCtx> {
  static constexpr ub4 value = OCI_HTYPE_SVCCTX;
};
template <>
struct HandleType<OCISession> {
  static constexpr ub4 value = OCI_HTYPE_SESSION;
};
template <>
struct HandleType<OCIStmt> {
  static constexpr ub4 value = OCI_HTYPE_STMT;
};

struct FreeHandle {
  template <class H>
  void operator()(H* handle) const noexcept {
    OCIHandleFree(handle, HandleType<H>::value);
  }
};
struct FreeParameter {
  void operator()(OCIParam* parameter) const noexcept { OCIDescriptorFree(parameter, OCI_DTYPE_PARAM); }
};

template <class H>
using Handle = std::unique_ptr<H, FreeHandle>;
using Parameter = std::unique_ptr<OCIParam, FreeParameter>;

template <class H>
Handle<H> AllocateHandle(OCIEnv* environment) {
  void* handle = nullptr;
  const sword status = OCIHandleAlloc(environment, &handle, HandleType<H>::value, 0, nullptr);
  if (Failed(status)) throw OciFailure(status, L"allocate a handle", OciFailure::kNone);
  return Handle<H>(static_cast<H*>(handle));
}

}  // namespace oracle8
