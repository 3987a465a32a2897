// A program under test.
#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quillon::test {

/// Runs a program from construction to its end, or kills it at destruction, and collects what it prints.
class ChildProcess {
public:
    using Environment = std::map<std::string, std::string>;

    /// `environment` is added to this process's own. Throws std::runtime_error when the program cannot be
    /// started.
    explicit ChildProcess(std::vector<std::string> const& arguments, Environment const& environment = {});
    ~ChildProcess();
    ChildProcess(ChildProcess const&) = delete;
    ChildProcess& operator=(ChildProcess const&) = delete;

    void signal(int number);
    /// The arguments as every user of the machine sees them, each with a NUL behind; while it runs.
    std::string commandLine() const;
    /// Waits for the end and returns the exit code; minus the signal's number for a program that was killed.
    /// After half a minute the program is killed.
    int wait();
    /// The most memory that the program held at once, in KiB; known after wait(). It counts from this
    /// process's own peak at the start, so keep that low.
    long peakKiB() const { return m_peakKiB; }
    /// Waits until `text` stands in the output; false at its end or after half a minute.
    bool awaitOutput(std::string const& text) const;
    /// What has come so far, of one stream or the other.
    std::string output() const;
    std::string errors() const;

private:
    struct Stream {
        int descriptor = -1;
        std::string text;
        bool ended = false;
        std::thread reader;
    };

    void collect(Stream& stream);

    pid_t m_pid = -1;
    long m_peakKiB = 0;
    mutable std::mutex m_mutex; // of the streams' texts
    mutable std::condition_variable m_changed;
    Stream m_output;
    Stream m_errors;
};

} // namespace quillon::test
