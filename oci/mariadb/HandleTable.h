// SPDX-License-Identifier: Apache-2.0
// From the number that a caller holds to the handle that it stands for. A number is made of a mark, which no
// address has, a count, and the slot that the handle lies in; once the slot is given up, its number finds
// nothing for ever. Finding takes no lock and reads slots only, which are never given back to the system.
// Any thread may find; changes are made under the register's lock.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace ocimaria {

class Handle;

// The parts of a number, from its lowest bit on: slot, count, mark.
class HandleToken {
 public:
  static constexpr unsigned kSlotBits = 22, kCountBits = 40;
  static constexpr std::size_t kSlots = std::size_t{1} << kSlotBits;
  static constexpr std::uintptr_t kMostHandles = (std::uintptr_t{1} << kCountBits) - 1;

  constexpr HandleToken(std::uintptr_t count, std::size_t slot)
      : m_value(kMark | count << kSlotBits | slot) {}
  explicit HandleToken(const void* token) : m_value(reinterpret_cast<std::uintptr_t>(token)) {}

  constexpr std::uintptr_t Value() const { return m_value; }
  constexpr std::size_t Slot() const { return m_value & (kSlots - 1); }
  // 0 for what has not the mark.
  constexpr std::uintptr_t Count() const {
    return (m_value & ~kBelowMark) == kMark ? (m_value & kBelowMark) >> kSlotBits : 0;
  }

 private:
  static constexpr std::uintptr_t kMark = std::uintptr_t{1} << (kSlotBits + kCountBits);
  static constexpr std::uintptr_t kBelowMark = kMark - 1;

  std::uintptr_t m_value;
};

class HandleTable {
 public:
  static constexpr std::size_t kBlockSlots = 1024;

  Handle* Find(const void* token) const {
    const HandleToken wanted(token);
    const Slot* block = m_blocks[wanted.Slot() / kBlockSlots].load(std::memory_order_acquire);
    if (!block) return nullptr;
    const Slot& slot = block[wanted.Slot() % kBlockSlots];
    if (slot.token.load(std::memory_order_acquire) != wanted.Value()) return nullptr;
    return slot.handle.load(std::memory_order_relaxed);
  }
  // The handle in a slot, or null. REQUIRES: its block was added; the register's lock.
  Handle* At(std::size_t slot) const { return SlotAt(slot).handle.load(std::memory_order_relaxed); }

  // Makes the slots from `first`, a multiple of kBlockSlots, to the end of their block. They stay.
  void AddBlock(std::size_t first) {
    m_blocks[first / kBlockSlots].store(new Slot[kBlockSlots], std::memory_order_release);
  }
  // Gives a slot to a handle, or with null takes it back. REQUIRES: its block was added.
  void Set(HandleToken token, Handle* handle) {
    Slot& slot = SlotAt(token.Slot());
    slot.handle.store(handle, std::memory_order_relaxed);
    slot.token.store(handle ? token.Value() : 0, std::memory_order_release);
  }

 private:
  struct Slot {
    std::atomic<std::uintptr_t> token{0};  // 0: free
    std::atomic<Handle*> handle{nullptr};
  };
  Slot& SlotAt(std::size_t slot) const {
    return m_blocks[slot / kBlockSlots].load(std::memory_order_relaxed)[slot % kBlockSlots];
  }

  std::array<std::atomic<Slot*>, HandleToken::kSlots / kBlockSlots> m_blocks{};
};

// Never destroyed: handles may be freed while the process already runs its exit handlers.
inline constinit HandleTable the_handle_table;

}  // namespace ocimaria
