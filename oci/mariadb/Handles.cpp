// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Handles.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

#include "oci/mariadb/TraceEvents.h"

namespace ocimaria {

class HandleRegister {
 public:
  void Enter(std::shared_ptr<Handle> handle, const void* parent);
  // The handle and all below it, those below before those above, linked by m_next; null: no such handle.
  Handle* TakeOut(const void* token, ub4 type);
  static void LetGo(Handle* taken);
  std::shared_ptr<Handle> Share(const void* token);
  std::vector<const Handle*> All();
  std::uintptr_t Count() const { return m_count.load(std::memory_order_relaxed); }

 private:
  HandleToken NewToken();
  void TakeBack(Handle& handle);
  void Collect(Handle& handle, Handle*& taken);
  static void Link(Handle& handle, Handle& parent);
  static void Unlink(Handle& handle);
  static std::vector<const Handle*> FromAbove(const Handle* taken);

  std::mutex m_mutex;
  std::atomic<std::uintptr_t> m_count{0};  // handles that there ever were; changed under the lock
  std::size_t m_slots = 0;                 // in the table
  std::vector<std::uint32_t> m_free;       // slots; has room for all that there are
};

void HandleRegister::Link(Handle& handle, Handle& parent) {
  handle.m_parent = &parent;
  handle.m_next = std::exchange(parent.m_first_child, &handle);
  if (handle.m_next) handle.m_next->m_previous = &handle;
}

void HandleRegister::Unlink(Handle& handle) {
  if (handle.m_next) handle.m_next->m_previous = handle.m_previous;
  if (handle.m_previous)
    handle.m_previous->m_next = handle.m_next;
  else if (handle.m_parent)
    handle.m_parent->m_first_child = handle.m_next;
}

HandleToken HandleRegister::NewToken() {
  if (Count() == HandleToken::kMostHandles) throw std::bad_alloc();
  if (m_free.empty()) {
    if (m_slots == HandleToken::kSlots) throw std::bad_alloc();
    m_free.reserve(m_slots + HandleTable::kBlockSlots);
    the_handle_table.AddBlock(m_slots);
    m_slots += HandleTable::kBlockSlots;
    for (std::size_t i = 1; i <= HandleTable::kBlockSlots; ++i)
      m_free.push_back(static_cast<std::uint32_t>(m_slots - i));
  }
  const HandleToken token(Count() + 1, m_free.back());
  m_free.pop_back();
  m_count.store(Count() + 1, std::memory_order_relaxed);
  return token;
}

void HandleRegister::Enter(std::shared_ptr<Handle> handle, const void* parent) {
  std::lock_guard lock(m_mutex);
  Handle* const above = parent ? FindHandle(parent) : nullptr;
  if (parent && !above) throw InvalidHandle{};
  const HandleToken token = NewToken();
  handle->m_token = reinterpret_cast<void*>(token.Value());
  trace::HandleAllocated(*handle, above);
  if (above) Link(*handle, *above);
  the_handle_table.Set(token, handle.get());
  Handle& kept = *handle;
  kept.m_kept = std::move(handle);
}

void HandleRegister::TakeBack(Handle& handle) {
  const HandleToken token(handle.m_token);
  the_handle_table.Set(token, nullptr);
  m_free.push_back(static_cast<std::uint32_t>(token.Slot()));
}

void HandleRegister::Collect(Handle& handle, Handle*& taken) {
  TakeBack(handle);
  Handle* child = std::exchange(handle.m_first_child, nullptr);
  handle.m_next = std::exchange(taken, &handle);
  while (child) {
    Handle& now = *child;
    child = child->m_next;
    Collect(now, taken);
  }
}

std::vector<const Handle*> HandleRegister::FromAbove(const Handle* taken) {
  std::vector<const Handle*> handles;
  for (; taken; taken = taken->m_next) handles.push_back(taken);
  std::ranges::reverse(handles);
  return handles;
}

Handle* HandleRegister::TakeOut(const void* token, ub4 type) {
  std::lock_guard lock(m_mutex);
  Handle* const handle = FindHandle(token);
  if (!handle || handle->Type() != type) return nullptr;
  Unlink(*handle);
  Handle* taken = nullptr;
  Collect(*handle, taken);
  if (trace::On(trace::kHandles)) trace::HandlesFreed(FromAbove(taken));
  return taken;
}

void HandleRegister::LetGo(Handle* taken) {
  while (taken) {
    const auto last = std::move(taken->m_kept);
    taken = taken->m_next;
  }
}

std::shared_ptr<Handle> HandleRegister::Share(const void* token) {
  std::lock_guard lock(m_mutex);
  const Handle* const handle = FindHandle(token);
  return handle ? handle->m_kept : nullptr;
}

std::vector<const Handle*> HandleRegister::All() {
  std::lock_guard lock(m_mutex);
  std::vector<const Handle*> all;
  for (std::size_t slot = 0; slot < m_slots; ++slot)
    if (const Handle* handle = the_handle_table.At(slot)) all.push_back(handle);
  return all;
}

namespace {

// Never destroyed: handles may be freed while the process already runs its exit handlers.
HandleRegister& TheRegister() {
  static auto& instance = *new HandleRegister;
  return instance;
}

// Tells the trace, as the library goes, which handles nobody freed.
struct AtEnd {
  ~AtEnd() {
    if (!trace::On(trace::kHandles)) return;
    auto left = TheRegister().All();
    std::ranges::sort(left, {}, [](const Handle* handle) { return HandleNumber(handle->Token()); });
    trace::HandlesLeft(left);
  }
} const at_end;

}  // namespace

std::uintptr_t HandleNumber(const void* token) {
  const std::uintptr_t count = HandleToken(token).Count();
  return count <= TheRegister().Count() ? count : 0;
}

void Register(std::shared_ptr<Handle> handle, const void* parent) {
  TheRegister().Enter(std::move(handle), parent);
}

bool Unregister(const void* token, ub4 type) {
  Handle* const taken = TheRegister().TakeOut(token, type);
  HandleRegister::LetGo(taken);
  return taken != nullptr;
}

std::shared_ptr<Handle> ShareHandle(const void* token) { return TheRegister().Share(token); }

}  // namespace ocimaria
