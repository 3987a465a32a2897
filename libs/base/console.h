// The process's log: formats lines, writes them to a stream for each category and to the system log.
#pragma once

#include "base/cachefifo.h"
#include "base/log.h"
#include "base/logstream.h"
#include "base/task.h"

#include <array>
#include <atomic>
#include <cstdio>

namespace quillon {

/// Writes log lines from a thread of its own. The one object of the process is the global `console`; it is
/// made at its first use and never destroyed, so that static constructors and destructors can log.
class Console final : public gc::ObjectDelete {
public:
    /// Starts the task that writes the lines.
    Console();
    ~Console() override;

    char const* getClassName() const noexcept override { return "Console"; }

    /// The process's console, made at the first call.
    static gc::Pointer<Console>& instance();

    /// Queues a line tagged with the calling thread's name; prints it at once when the console has quit or
    /// the caller is the console's own task. Any thread.
    void log(LogCategory category, String const& cls, String const& method, String const& text);
    void log(LogCategory category, String const& tag, String const& cls, String const& method,
             String const& text);
    /// The text becomes "number text"; there is no method.
    void log(LogCategory category, String const& cls, int number, String const& text);
    void log(LogCategory category, String const& tag, String const& cls, int number, String const& text);
    /// A method of one letter is no number.
    template <std::same_as<char> C>
    void log(LogCategory category, String const& cls, C method, String const& text) {
        log(category, cls, String(method), text);
    }
    template <std::same_as<char> C>
    void log(LogCategory category, String const& tag, String const& cls, C method, String const& text) {
        log(category, tag, cls, String(method), text);
    }

    /// The longest line in bytes, its time not counted. A longer one is cut, as cutText() does it.
    static constexpr unsigned longestLine = 8192;

    /// Sends a category to "null" (the system log alone), "stdout", "stderr" or a file, which is truncated.
    /// A file that LogStream::open() refuses sends the category to "null"; false then, with the reason.
    bool setStream(LogCategory category, String const& name, String* reason = nullptr);
    /// Sends a category to an open stream, or given null to the system log alone. The console closes it,
    /// unless it is a standard stream, when the category gets another one; categories that share it are then
    /// sent to standard output.
    void setStream(LogCategory category, FILE* file, String const& name);
    /// Where the category's lines go: "null", "stdout", "stderr", a file's path, or what an open stream was
    /// named. Any thread.
    String getFilename(LogCategory category) const;

    /// The system's name, version and patch level, as uname gives them, parted by blanks.
    String getOs();
    String getOsName();
    String getOsVersion();
    String getOsPatch();
    void infoSystem(bool logIt);

    /// Waits until the lines queued before the call are printed, at most `ms` milliseconds; false on
    /// time-out.
    bool drain(unsigned ms);
    /// Ends the task: from now on lines are printed on the caller's thread. Lines still queued are dropped.
    void quit();
    /// Waits for the task to end, at most two seconds. False when it has not: then something that takes its
    /// lines hangs, the log is given up, and what is logged is lost.
    bool join();
    bool quit_and_join();

    /// Whether `thread` is the task.
    bool isTask(Thread const& thread) const noexcept { return &thread == &m_task; }

private:
    struct Stream {
        std::shared_ptr<LogStream> target; // whoever prints holds it too, so that it is not closed meanwhile
        String name = "stdout";
        String label;
    };

    struct Message : FifoLink<Message> {
        static Message* create() { return new Message; }
        bool isEmpty() const { return tag.empty() && cls.empty() && method.empty() && text.empty(); }
        void takeFrom(Message& other);

        LogCategory category = TRACE;
        String tag, cls, method, text;
        bool marksDrain = false;
    };

    void main();
    void handle(Message const& message);
    void print(LogCategory category, String const& tag, String const& cls, String const& method,
               String const& text);
    void install(LogCategory category, std::shared_ptr<LogStream> target, String const& name);
    /// The stream that has this file already, or a new one. Under the streams' mutex.
    std::shared_ptr<LogStream> streamOf(FILE* file) const;

    // Streams change at start-up while the task may be printing. Nothing is written under this lock.
    mutable Mutex m_streamsMutex;
    std::shared_ptr<LogStream> const m_standardOutput = std::make_shared<LogStream>(stdout);
    std::array<Stream, 4> m_streams;

    Mutex m_printing; // one line at a time, when the task has ended

    Mutex m_osMutex;
    String m_osName, m_osVersion, m_osPatch;

    std::atomic<bool> m_running{true};
    std::atomic<bool> m_givenUp{false}; // the task has been waited for in vain
    CacheFifoNoBlockPush<Message> m_messages;

    Mutex m_drainMutex;
    Condition m_drained;
    unsigned m_drainsAsked = 0;
    unsigned m_drainsDone = 0;

    Task<Console> m_task; // last: it runs on all of the above
};

/// The process's console. Empty before the first use; a program that empties it logs nothing any more.
extern gc::Pointer<Console>& console;

} // namespace quillon
