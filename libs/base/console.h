// The process's log: formats lines, writes them to a stream for each category and to the system log.
#pragma once

#include "base/cachefifo.h"
#include "base/log.h"
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

    /// Sends a category to "null" (the system log alone), "stdout", "stderr" or a file, which is truncated.
    /// Where the file cannot be opened the category goes to the system log alone.
    void setStream(LogCategory category, String const& name);
    /// Sends a category to an open stream. The console closes it, unless it is a standard stream, when the
    /// category gets another one; categories that share it are then sent to standard output.
    void setStream(LogCategory category, FILE* file, String const& name);
    String getFilename(LogCategory category) const;

    /// Writes paths below `directory`, which ends in no "/", as "~/..." in every line from now on: a home
    /// directory's path holds its user's name. Empty ends that. Any thread.
    void setHome(String const& directory);

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
    void join();
    void quit_and_join();

private:
    struct Stream {
        FILE* file = stdout;
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

    mutable Mutex m_streamsMutex; // streams and home change at start-up while the task may be printing
    std::array<Stream, 4> m_streams;
    String m_home; // with a "/" behind it; empty when paths are written as they are

    Mutex m_osMutex;
    String m_osName, m_osVersion, m_osPatch;

    std::atomic<bool> m_running{true};
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
