#include "base/memoryblock.h"

#include "base/assertion.h"
#include "base/immortal.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace quillon {

namespace {

constinit std::array<std::atomic<MemoryBlock*>, MemoryBlockPool::MBP_POOLSIZE> g_slots{};

unsigned roundUp(unsigned size) {
    unsigned const rounded =
        (size + (MemoryBlock::granularity - 1)) / MemoryBlock::granularity * MemoryBlock::granularity;
    QUILLON_ASSERT(rounded >= std::max(size, 1u), "rounded size is not 0 and not below the size asked");
    return rounded;
}

} // namespace

MemoryBlock::~MemoryBlock() {
    std::free(m_array);
}

MemoryBlock* MemoryBlock::foreign() noexcept {
    // Its counter may reach 0, which hands it to gcDestroy(); that leaves it alone.
    static constinit Immortal<MemoryBlock> block;
    return &block.value;
}

void MemoryBlock::resize(unsigned size) {
    if (size <= m_capacity)
        return;
    unsigned const rounded = roundUp(size);
    char* const array = static_cast<char*>(std::realloc(m_array, rounded));
    QUILLON_ASSERT(array != nullptr, "out of memory");
    m_array = array;
    m_capacity = rounded;
}

void MemoryBlock::gcDestroy() noexcept {
    if (this != foreign())
        MemoryBlockPool::give(this);
}

MemoryBlock* MemoryBlockPool::take(unsigned size) {
    if (size <= maxCachedCapacity) {
        unsigned const slot = (size - 1) / MemoryBlock::granularity;
        if (MemoryBlock* const cached = g_slots[slot].exchange(nullptr, std::memory_order_acq_rel))
            return cached;
    }
    MemoryBlock* const block = new MemoryBlock;
    block->resize(size);
    return block;
}

void MemoryBlockPool::give(MemoryBlock* block) noexcept {
    unsigned const capacity = block->capacity();
    if (capacity == 0 || capacity > maxCachedCapacity || capacity % MemoryBlock::granularity != 0) {
        delete block;
        return;
    }
    delete g_slots[capacity / MemoryBlock::granularity - 1].exchange(block, std::memory_order_acq_rel);
}

} // namespace quillon
