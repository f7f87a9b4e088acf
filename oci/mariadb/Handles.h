// SPDX-License-Identifier: Apache-2.0
// Handles as callers see them. A handle that leaves the library is a number out of a register, never an
// address, and no number is given out twice: a null, wrong or freed handle is found out by looking it up, and
// no freed memory is read. A handle has one parent (the environment none) and is freed with it.
// The register may be used by any thread; what a handle holds follows the rule of the call interface: one
// thread at a time, OCIBreak and OCIReset excepted, and no thread frees a handle that another one's call
// uses.
#pragma once

#include <oci.h>

#include <cstdint>
#include <memory>

#include "oci/mariadb/HandleTable.h"

namespace ocimaria {

class Handle {
 public:
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  virtual ~Handle() = default;

  ub4 Type() const { return m_type; }
  void* Token() const { return m_token; }  // what the caller holds; null before it is registered

 protected:
  explicit Handle(ub4 type) : m_type(type) {}

 private:
  friend class HandleRegister;
  const ub4 m_type;  // OCI_HTYPE_* or OCI_DTYPE_*
  void* m_token = nullptr;
  // The register's: it keeps a handle alive, and links it with its parent and its parent's other children.
  std::shared_ptr<Handle> m_kept;
  Handle* m_parent = nullptr;
  Handle* m_first_child = nullptr;
  Handle* m_previous = nullptr;
  Handle* m_next = nullptr;
};

// The how-manieth handle of the process a token stands for, from 1; 0 for what is no token.
std::uintptr_t HandleNumber(const void* token);

// Thrown where a call needs a handle and was given something else. The guard answers OCI_INVALID_HANDLE.
struct InvalidHandle {};

// Enters a new handle. `parent` is the token of its parent, null for an environment.
void Register(std::shared_ptr<Handle> handle, const void* parent);

// Takes a handle and everything below it out of the register. False when there is no such handle.
bool Unregister(const void* token, ub4 type);

// The live handle of this token, or null. It lives as long as the call that it was given to.
inline Handle* FindHandle(const void* token) { return the_handle_table.Find(token); }

// The same of one class; each class names its type as kType.
template <class T>
T* Find(const void* token) {
  Handle* handle = FindHandle(token);
  return handle && handle->Type() == T::kType ? static_cast<T*>(handle) : nullptr;
}

// REQUIRES a live handle of the class, throws InvalidHandle otherwise.
template <class T>
T& Need(const void* token) {
  T* handle = Find<T>(token);
  if (!handle) throw InvalidHandle{};
  return *handle;
}

// For what outlives the call, or works while another thread may free the handle.
std::shared_ptr<Handle> ShareHandle(const void* token);

template <class T>
std::shared_ptr<T> Share(const void* token) {
  auto handle = ShareHandle(token);
  if (!handle || handle->Type() != T::kType) return nullptr;
  return std::static_pointer_cast<T>(std::move(handle));
}

// Makes a handle of class T below `parent` and enters it. What is returned lives as long as it is registered.
template <class T, class... Arguments>
T& Make(const void* parent, Arguments&&... arguments) {
  auto handle = std::make_shared<T>(std::forward<Arguments>(arguments)...);
  T& made = *handle;
  Register(std::move(handle), parent);
  return made;
}

}  // namespace ocimaria
