// The storage of strings: shared, growable, recycled blocks of bytes.
#pragma once

#include "base/gcobject.h"

namespace quillon {

/// A reference-counted array of bytes from malloc. Its bytes are uninitialised until written.
class MemoryBlock final : public gc::Object {
public:
    /// The step in which capacities grow, in bytes.
    static constexpr unsigned granularity = 64;

    char const* getClassName() const noexcept override { return "MemoryBlock"; }

    unsigned capacity() const noexcept { return m_capacity; }
    char* array() const noexcept { return m_array; }

    /// Grows the array so that it holds at least `size` bytes, rounded up to a multiple of 64; never shrinks.
    /// The array may move. Only the block's sole owner may call it.
    void resize(unsigned size);

    /// The owner of bytes that belong to a caller and whose surroundings are unknown: a string that holds it
    /// never reads past its own end. Capacity 0; lives as long as the process.
    static MemoryBlock* foreign() noexcept;

protected:
    /// Returns the block to the pool.
    void gcDestroy() noexcept override;

private:
    friend class MemoryBlockPool;
    template <class T>
    friend union Immortal;

    constexpr MemoryBlock() noexcept = default;
    ~MemoryBlock() override;

    unsigned m_capacity = 0;
    char* m_array = nullptr;
};

/// The process-wide cache of free blocks: one block for each capacity from 64 to 8192 bytes, exchanged
/// atomically and without a lock. Any thread.
class MemoryBlockPool {
public:
    /// Number of slots: slot i holds at most one block of capacity (i + 1) * 64.
    static constexpr unsigned MBP_POOLSIZE = 128;
    /// Blocks above this capacity, in bytes, are not cached.
    static constexpr unsigned maxCachedCapacity = MBP_POOLSIZE * MemoryBlock::granularity;

    /// A block without references whose capacity is at least `size` bytes, `size` not 0.
    static MemoryBlock* take(unsigned size);

    /// Keeps `block` for a later take(), or deletes it when no slot is for its capacity.
    static void give(MemoryBlock* block) noexcept;
};

} // namespace quillon
