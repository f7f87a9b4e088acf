// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Handles.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>
#include <unordered_set>
#include <vector>

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
void* NextToken() {
  static std::atomic<std::uintptr_t> next{0x0C1000000000};
  return reinterpret_cast<void*>(next.fetch_add(16, std::memory_order_relaxed));
}

using Entries = std::unordered_map<const void*, Entry>;

void TakeOut(Entries& entries, Entries::iterator at, std::vector<std::shared_ptr<Handle>>& taken) {
  const std::unordered_set<const void*> children = std::move(at->second.children);
  taken.push_back(std::move(at->second.handle));
  entries.erase(at);
  for (const void* child : children) TakeOut(entries, entries.find(child), taken);
}

}  // namespace

Handle::Handle(ub4 type) : m_type(type), m_token(NextToken()) {}

void Register(std::shared_ptr<Handle> handle, const void* parent) {
  const void* token = handle->Token();
  std::unique_lock lock(TheRegister().mutex);
  auto& entries = TheRegister().entries;
  if (parent) {
    const auto above = entries.find(parent);
    if (above == entries.end()) throw InvalidHandle{};
    above->second.children.insert(token);
  }
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
