#include "base/thread.h"

#include "base/exception.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

using namespace quillon;

namespace {

class FunctionThread final : public Thread {
public:
    FunctionThread(String const& name, bool synchronised, std::function<void()> body)
        : Thread(name, PRIORITY_NORMAL, synchronised), m_body(std::move(body)) {}
    ~FunctionThread() override { join(); }
    void main() override { m_body(); }

private:
    std::function<void()> m_body;
};

/// Lets threads wait until the test opens it.
class Gate {
public:
    void open() {
        TSynchronize<Mutex> lock(m_mutex);
        m_open = true;
        m_opened.broadcast();
    }
    void pass() {
        TSynchronize<Mutex> lock(m_mutex);
        while (!m_open)
            m_opened.wait(m_mutex);
    }

private:
    Mutex m_mutex;
    Condition m_opened;
    bool m_open = false;
};

} // namespace

TEST(Thread, runs_again_and_again) {
    Gate gate;
    int runs = 0;
    FunctionThread thread("again", true, [&] {
        ++runs, gate.pass();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    });
    EXPECT_FALSE(thread.isRunning());
    EXPECT_TRUE(thread.join()) << "not running: nothing to wait for";
    EXPECT_TRUE(thread.run());
    EXPECT_TRUE(thread.isRunning());
    EXPECT_FALSE(thread.run()) << "it runs already";
    EXPECT_FALSE(thread.join(20));
    gate.open();
    EXPECT_TRUE(thread.join());
    EXPECT_FALSE(thread.isRunning());
    EXPECT_TRUE(thread.run(true));
    EXPECT_TRUE(thread.join(1ul << 32)) << "a long limit is not a short one";
    EXPECT_EQ(runs, 2);
}

// run() once waited for ever for a thread that had finished before it was seen to start.
TEST(Thread, starting_one_that_ends_at_once_does_not_hang) {
    for (int i = 0; i < 3000; ++i) {
        FunctionThread thread("short", true, [] {});
        thread.run();
    }
}

TEST(Thread, knows_itself) {
    EXPECT_TRUE(Thread::getMyIdString().starts("0x"));
    for (bool const synchronised : {true, false}) {
        String id;
        bool knows = false;
        FunctionThread thread("a name of some length", synchronised, [&] {
            id = Thread::getMyIdString();
            knows = Thread::getCurrentThread() == &thread && thread.isMyThread() && !thread.join();
        });
        thread.run();
        thread.join();
        EXPECT_TRUE(synchronised ? id == thread.getName() : id.starts("0x")) << id.str();
        EXPECT_TRUE(knows);
        EXPECT_FALSE(thread.isMyThread());
    }
}

TEST(Thread, an_escaped_exception_is_logged_and_ends_the_thread) {
    test::LogCapture log;
    char osName[32] = "";
    FunctionThread thread("sixteen letters!", true, [&] {
        pthread_getname_np(pthread_self(), osName, sizeof osName);
        throw Exception("EX", "file", 1);
    });
    thread.run();
    EXPECT_TRUE(thread.join(10000));
    EXPECT_FALSE(thread.isRunning());
    EXPECT_EQ(log.count("[sixteen letters!] ERROR Thread.thread_func Exception caught in main()\n"), 1u);
    EXPECT_TRUE(log.contains("ERROR Thread.thread_func sixteen letters!: EX:file:1\n"));
    EXPECT_STREQ(osName, "sixteen letters");
}

// What a thread keeps for itself goes when it is replaced, removed, or the thread ends.
TEST(Thread, local_data_ends_with_the_thread_at_the_latest) {
    struct Data : ThreadLocalData {
        explicit Data(std::string& list, char letter) : ended(list), name(letter) {}
        ~Data() override { ended += name; }
        std::string& ended;
        char name;
    };
    std::string ended;
    FunctionThread thread("keeper", true, [&] {
        Thread& self = *Thread::getCurrentThread();
        self.setLocalData("key", new Data(ended, 'a'));
        self.setLocalData("other", new Data(ended, 'b'));
        self.setLocalData("key", new Data(ended, 'c'));
        EXPECT_EQ(ended, "a");
        EXPECT_EQ(static_cast<Data*>(self.getLocalData("key"))->name, 'c');
        self.removeLocalData("other");
        EXPECT_EQ(self.getLocalData("other"), nullptr);
        EXPECT_EQ(ended, "ab");
    });
    thread.run();
    thread.join();
    EXPECT_EQ(ended, "abc");
}

TEST(Thread, sleep_ends_when_woken) {
    for (unsigned long const limit : {60000ul, 1ul << 32, Thread::noLimit - 1, Thread::noLimit}) {
        Mutex mutex;
        bool asleep = false, woken = false;
        FunctionThread thread("sleeper", true, [&] {
            TSynchronize<Mutex> lock(mutex);
            asleep = true;
            woken = thread.wait(limit, mutex) && !thread.sleep(1, mutex);
            woken = woken && thread.sleep(limit, mutex);
        });
        thread.run();
        for (bool ended = false; !ended; ended = thread.join(5)) {
            TSynchronize<Mutex> lock(mutex);
            if (asleep)
                thread.wakeUp();
        }
        EXPECT_TRUE(woken) << limit;
    }
}

TEST(Condition, timed_wait_tells_signal_from_timeout) {
    using namespace std::chrono;
    Mutex mutex;
    Condition condition;
    auto const start = steady_clock::now();
    {
        TSynchronize<Mutex> lock(mutex);
        EXPECT_FALSE(condition.wait(30, mutex));
    }
    EXPECT_FALSE(condition.wait(30, nomutex));
    EXPECT_GE(steady_clock::now() - start, milliseconds(60));
    mutex.lock();
    std::thread signaller([&] {
        TSynchronize<Mutex> inner(mutex); // free as soon as the test waits
        condition.signal();
    });
    EXPECT_TRUE(condition.wait(60000, mutex));
    mutex.unlock();
    signaller.join();
}

// A lock without a native mutex is let go during the wait and held again afterwards.
TEST(Condition, waits_with_any_lock) {
    struct Lock : IMutex {
        void lock() override { m_mutex.lock(); }
        void unlock() override { m_mutex.unlock(); }
        Mutex m_mutex;
    } lock;
    Condition condition;
    int turns = 0;
    constexpr int rounds = 200;
    auto const play = [&](int parity) {
        TSynchronize<Lock> hold(lock);
        while (turns < rounds) {
            if (turns % 2 == parity)
                ++turns, condition.broadcast();
            else
                condition.wait(5, lock);
        }
    };
    std::thread other(play, 1);
    play(0);
    other.join();
    EXPECT_EQ(turns, rounds);
}
