// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Handles.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "oci/mariadb/TraceEvents.h"

namespace ocimaria {
namespace {

struct Entry {
  std::shared_ptr<Handle> handle;
  const void* parent;
  std::unordered_set<const void*> children;
};

struct HandleRegister {
  std::shared_mutex mutex;
  std::unordered_map<const void*, Entry> entries;
};

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

using Entries = std::unordered_map<const void*, Entry>;

void TakeOut(Entries& entries, Entries::iterator at, std::vector<std::shared_ptr<Handle>>& taken) {
  const std::unordered_set<const void*> children = std::move(at->second.children);
  taken.push_back(std::move(at->second.handle));
  entries.erase(at);
  for (const void* child : children) TakeOut(entries, entries.find(child), taken);
}

// Tells the trace, as the library goes, which handles nobody freed.
struct AtEnd {
  ~AtEnd() {
    if (!trace::On(trace::kHandles)) return;
    std::vector<std::shared_ptr<Handle>> left;
    std::shared_lock lock(TheRegister().mutex);
    for (const auto& entry : TheRegister().entries) left.push_back(entry.second.handle);
    std::ranges::sort(left, {}, [](const auto& handle) { return handle->Token(); });
    trace::HandlesLeft(left);
  }
} const at_end;

}  // namespace

std::uintptr_t HandleNumber(const void* token) {
  const auto value = reinterpret_cast<std::uintptr_t>(token);
  if (value < kFirstToken || value >= next_token.load(std::memory_order_relaxed)) return 0;
  return (value - kFirstToken) / kTokenStep + 1;
}

Handle::Handle(ub4 type) : m_type(type), m_token(NextToken()) {}

void Register(std::shared_ptr<Handle> handle, const void* parent) {
  const void* token = handle->Token();
  std::unique_lock lock(TheRegister().mutex);
  auto& entries = TheRegister().entries;
  const auto above = parent ? entries.find(parent) : entries.end();
  if (parent && above == entries.end()) throw InvalidHandle{};
  if (parent) above->second.children.insert(token);
  trace::HandleAllocated(*handle, parent ? above->second.handle.get() : nullptr);
  entries.emplace(token, Entry{std::move(handle), parent, {}});
}

bool Unregister(const void* token, ub4 type) {
  std::vector<std::shared_ptr<Handle>> taken;  // destroyed after the lock is gone
  std::unique_lock lock(TheRegister().mutex);
  auto& entries = TheRegister().entries;
  const auto at = entries.find(token);
  if (at == entries.end() || at->second.handle->Type() != type) return false;
  if (const auto above = entries.find(at->second.parent); above != entries.end())
    above->second.children.erase(token);
  TakeOut(entries, at, taken);
  trace::HandlesFreed(taken);
  lock.unlock();
  while (!taken.empty()) taken.pop_back();  // children before their parents
  return true;
}

std::shared_ptr<Handle> FindHandle(const void* token) {
  std::shared_lock lock(TheRegister().mutex);
  const auto at = TheRegister().entries.find(token);
  return at == TheRegister().entries.end() ? nullptr : at->second.handle;
}

}  // namespace ocimaria
