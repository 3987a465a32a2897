#include "curl/transfercallbacks.h"

#include "base/textwriter.h"

#include <gtest/gtest.h>

#include <new>

using namespace quillon;

namespace {

class WriterWithoutMemory : public TextWriter<IWriter> {
protected:
    void put(char const*, unsigned) override { throw std::bad_alloc(); }
};

} // namespace

TEST(TransferCallbacks, memoryTakesNothingBeyondItsLimit) {
    char bytes[] = "12345678";
    Memory memory;
    MemoryTarget target{memory, 10};
    EXPECT_EQ(writeToMemory(bytes, 1, 8, &target), 8u);
    EXPECT_EQ(writeToMemory(bytes, 1, 3, &target), 0u);
    EXPECT_EQ(writeToMemory(bytes, 1, 2, &target), 2u);
    EXPECT_EQ(String(memory), "1234567812");
}

TEST(TransferCallbacks, noExceptionReachesTheCaller) {
    char bytes[] = "1";
    WriterWithoutMemory writer;
    EXPECT_EQ(writeToWriter(bytes, 1, 1, static_cast<IWriter*>(&writer)), 0u);
}
