// SPDX-License-Identifier: Apache-2.0
// Handles as callers see them. A handle that leaves the library is a number out of a register, never an
// address, and no number is given out twice: a null, wrong or freed handle is found out by looking it up, and
// no freed memory is read. A handle has one parent (the environment none) and is freed with it.
// The register may be used by any thread; what a handle holds follows the rule of the call interface (one
// thread at a time, OCIBreak excepted).
#pragma once

#include <oci.h>

#include <atomic>
#include <cstdint>
#include <memory>

namespace ocimaria {

class Handle {
 public:
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  virtual ~Handle() = default;

  ub4 Type() const { return m_type; }
  void* Token() const { return m_token; }  // what the caller holds

 protected:
  explicit Handle(ub4 type);

 private:
  friend class HandleRegister;
  const ub4 m_type;  // OCI_HTYPE_* or OCI_DTYPE_*
  void* const m_token;
  std::atomic<bool> m_is_registered{false};
};

// The how-manieth handle of the process a token stands for, from 1; 0 for what is no token.
std::uintptr_t HandleNumber(const void* token);

// Thrown where a call needs a handle and was given something else. The guard answers OCI_INVALID_HANDLE.
struct InvalidHandle {};

// Enters a new handle. `parent` is the token of its parent, null for an environment.
void Register(std::shared_ptr<Handle> handle, const void* parent);

// Takes a handle and everything below it out of the register. False when there is no such handle.
bool Unregister(const void* token, ub4 type);

// The live handle of this token, or null.
std::shared_ptr<Handle> FindHandle(const void* token);

// The same of one class; each class names its type as kType.
template <class T>
std::shared_ptr<T> Find(const void* token) {
  auto handle = FindHandle(token);
  if (!handle || handle->Type() != T::kType) return nullptr;
  return std::static_pointer_cast<T>(std::move(handle));
}

// REQUIRES a live handle of the class, throws InvalidHandle otherwise.
template <class T>
std::shared_ptr<T> Need(const void* token) {
  auto handle = Find<T>(token);
  if (!handle) throw InvalidHandle{};
  return handle;
}

// Makes a handle of class T below `parent` and enters it.
template <class T, class... Arguments>
std::shared_ptr<T> Make(const void* parent, Arguments&&... arguments) {
  auto handle = std::make_shared<T>(std::forward<Arguments>(arguments)...);
  Register(handle, parent);
  return handle;
}

}  // namespace ocimaria
