#include "base/exception.h"
#include "base/string.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace quillon;

TEST(MemoryBlock, capacitiesAreMultiplesOfSixtyFour) {
    static constexpr unsigned cases[][2] = {{1, 64}, {64, 64}, {65, 128}, {8192, 8192}, {8193, 8256}};
    for (auto const& [size, capacity] : cases)
        EXPECT_EQ(gc::Pointer<MemoryBlock>(MemoryBlockPool::take(size))->capacity(), capacity) << size;
}

TEST(MemoryBlock, freedBlocksAreRecycledBySize) {
    // A size that nobody else uses at the same time.
    MemoryBlock* const raw = MemoryBlockPool::take(7000);
    { gc::Pointer<MemoryBlock> const block(raw); }
    gc::Pointer<MemoryBlock> const smaller(MemoryBlockPool::take(6900));
    EXPECT_NE(smaller.get(), raw);
    gc::Pointer<MemoryBlock> const again(MemoryBlockPool::take(7001));
    EXPECT_EQ(again.get(), raw);
    gc::Pointer<MemoryBlock> const another(MemoryBlockPool::take(7001));
    EXPECT_NE(another.get(), raw);
}

TEST(MemoryBlock, stringsAreSharedAmongThreads) {
    String const shared = String::copyOf(std::string(100, 's'));
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    for (char c = 'a'; c < 'e'; ++c)
        threads.emplace_back([&shared, &wrong, c] {
            std::string const expected = std::string(100, 's') + c;
            for (int i = 0; i < 20000; ++i) {
                String mine = shared;
                String const piece = mine.range(10, 20);
                mine.append(c);
                wrong +=
                    mine.view() != expected || piece.view() != expected.substr(10, 20) || *mine.str() != 's';
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(shared.view(), std::string(100, 's'));
}

TEST(Pointer, anEmptyOneThrowsWhenDereferenced) {
    gc::Pointer<MemoryBlock> const empty;
    EXPECT_THROW(empty->capacity(), NullException);
    EXPECT_THROW(*empty, NullException);
}

TEST(Pointer, aWeakReferenceDoesNotReviveAnObject) {
    MemoryBlock* const block = MemoryBlockPool::take(1);
    EXPECT_FALSE(block->gcAddRef(true));
    gc::Pointer<MemoryBlock> const owner(block);
    EXPECT_TRUE(block->gcAddRef(true));
    block->gcRelease();
}
