// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Handles.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>
#include <utility>
#include <vector>

#include "oci/mariadb/TraceEvents.h"

namespace ocimaria {
namespace {

// One handle in the register, linked with its parent's other children.
struct Entry {
  std::shared_ptr<Handle> handle;
  Entry* parent = nullptr;
  Entry* first_child = nullptr;
  Entry* previous = nullptr;
  Entry* next = nullptr;
};

void Link(Entry& entry, Entry& parent) {
  entry.parent = &parent;
  entry.next = std::exchange(parent.first_child, &entry);
  if (entry.next) entry.next->previous = &entry;
}

void Unlink(Entry& entry) {
  if (entry.next) entry.next->previous = entry.previous;
  if (entry.previous)
    entry.previous->next = entry.next;
  else if (entry.parent)
    entry.parent->first_child = entry.next;
}

}  // namespace

class HandleRegister {
 public:
  using Taken = std::vector<std::shared_ptr<Handle>>;

  void Enter(std::shared_ptr<Handle> handle, const void* parent);
  bool TakeOut(const void* token, ub4 type, Taken& taken);
  std::shared_ptr<Handle> Find(const void* token);
  Taken All();

  static bool Holds(const Handle& handle) { return handle.m_is_registered.load(std::memory_order_acquire); }

 private:
  void TakeOut(Entry& entry, Taken& taken);

  std::shared_mutex m_mutex;
  std::unordered_map<const void*, Entry> m_entries;
};

void HandleRegister::Enter(std::shared_ptr<Handle> handle, const void* parent) {
  const void* token = handle->Token();
  std::unique_lock lock(m_mutex);
  const auto above = parent ? m_entries.find(parent) : m_entries.end();
  if (parent && above == m_entries.end()) throw InvalidHandle{};
  trace::HandleAllocated(*handle, parent ? above->second.handle.get() : nullptr);
  Entry* const parent_entry = parent ? &above->second : nullptr;
  Entry& entry = m_entries[token];
  if (parent_entry) Link(entry, *parent_entry);
  handle->m_is_registered.store(true, std::memory_order_release);
  entry.handle = std::move(handle);
}

// Handles below it come behind their parents.
void HandleRegister::TakeOut(Entry& entry, Taken& taken) {
  const void* token = entry.handle->Token();
  entry.handle->m_is_registered.store(false, std::memory_order_release);
  taken.push_back(std::move(entry.handle));
  while (entry.first_child) TakeOut(*entry.first_child, taken);
  Unlink(entry);
  m_entries.erase(token);
}

bool HandleRegister::TakeOut(const void* token, ub4 type, Taken& taken) {
  std::unique_lock lock(m_mutex);
  const auto at = m_entries.find(token);
  if (at == m_entries.end() || at->second.handle->Type() != type) return false;
  TakeOut(at->second, taken);
  trace::HandlesFreed(taken);
  return true;
}

std::shared_ptr<Handle> HandleRegister::Find(const void* token) {
  std::shared_lock lock(m_mutex);
  const auto at = m_entries.find(token);
  return at == m_entries.end() ? nullptr : at->second.handle;
}

HandleRegister::Taken HandleRegister::All() {
  std::shared_lock lock(m_mutex);
  Taken all;
  for (const auto& entry : m_entries) all.push_back(entry.second.handle);
  return all;
}

namespace {

// Never destroyed: handles may be freed while the process already runs its exit handlers.
HandleRegister& TheRegister() {
  static auto& instance = *new HandleRegister;
  return instance;
}

// Steps of 16 from a value that no small number or offset comes near.
constexpr std::uintptr_t kFirstToken = 0x0C1000000000, kTokenStep = 16;
constinit std::atomic<std::uintptr_t> next_token{kFirstToken};

void* NextToken() {
  return reinterpret_cast<void*>(next_token.fetch_add(kTokenStep, std::memory_order_relaxed));
}

// Tells the trace, as the library goes, which handles nobody freed.
struct AtEnd {
  ~AtEnd() {
    if (!trace::On(trace::kHandles)) return;
    auto left = TheRegister().All();
    std::ranges::sort(left, {}, [](const auto& handle) { return handle->Token(); });
    trace::HandlesLeft(left);
  }
} const at_end;

}  // namespace

namespace {

// The handles that a thread has looked up last. Most calls name the same few again, and the register is one
// for all threads. It keeps no handle alive and knows no handle longer than the register does.
class Memo {
 public:
  std::shared_ptr<Handle> Find(const void* token) {
    Known& known = m_known[reinterpret_cast<std::uintptr_t>(token) / kTokenStep % m_known.size()];
    if (known.token == token) {
      auto handle = known.handle.lock();
      if (handle && HandleRegister::Holds(*handle)) return handle;
    }
    auto handle = TheRegister().Find(token);
    known = {token, handle};
    return handle;
  }

 private:
  struct Known {
    const void* token = nullptr;
    std::weak_ptr<Handle> handle;
  };
  std::array<Known, 16> m_known;
};

// The memo of this thread; null before its first call, and when the thread is about to end.
thread_local constinit Memo* memo = nullptr;

struct MemoOwner {
  MemoOwner() { memo = &own; }
  ~MemoOwner() { memo = nullptr; }
  MemoOwner(const MemoOwner&) = delete;
  MemoOwner& operator=(const MemoOwner&) = delete;
  Memo own;
};

// Makes the memo, once; afterwards there is none.
[[gnu::noinline]] std::shared_ptr<Handle> FindWithoutMemo(const void* token) {
  thread_local MemoOwner owner;
  return TheRegister().Find(token);
}

}  // namespace

std::uintptr_t HandleNumber(const void* token) {
  const auto value = reinterpret_cast<std::uintptr_t>(token);
  if (value < kFirstToken || value >= next_token.load(std::memory_order_relaxed)) return 0;
  return (value - kFirstToken) / kTokenStep + 1;
}

Handle::Handle(ub4 type) : m_type(type), m_token(NextToken()) {}

void Register(std::shared_ptr<Handle> handle, const void* parent) {
  TheRegister().Enter(std::move(handle), parent);
}

bool Unregister(const void* token, ub4 type) {
  HandleRegister::Taken taken;
  if (!TheRegister().TakeOut(token, type, taken)) return false;
  while (!taken.empty()) taken.pop_back();  // children before their parents
  return true;
}

std::shared_ptr<Handle> FindHandle(const void* token) {
  return memo ? memo->Find(token) : FindWithoutMemo(token);
}

}  // namespace ocimaria
