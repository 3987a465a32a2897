#include "e2e/childprocess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>
#include <stdexcept>

extern char** environ;

namespace quillon::test {

namespace {

constexpr std::chrono::seconds patience(30);

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> all;
    for (std::string& text : texts)
        all.push_back(text.data());
    all.push_back(nullptr);
    return all;
}

std::vector<std::string> merged(ChildProcess::Environment environment) {
    for (char** entry = environ; *entry; ++entry) {
        std::string const text(*entry);
        auto const equals = text.find('=');
        environment.emplace(text.substr(0, equals), text.substr(equals + 1));
    }
    std::vector<std::string> entries;
    for (auto const& [name, value] : environment)
        entries.push_back(name + "=" + value);
    return entries;
}

} // namespace

ChildProcess::ChildProcess(std::vector<std::string> const& arguments, Environment const& environment) {
    int output[2], errors[2];
    if (pipe2(output, O_CLOEXEC) != 0 || pipe2(errors, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors[1], STDERR_FILENO);
    std::vector<std::string> owned = arguments;
    std::vector<std::string> entries = merged(environment);
    int const error = posix_spawn(&m_pid, owned[0].c_str(), &actions, nullptr, pointers(owned).data(),
                                  pointers(entries).data());
    posix_spawn_file_actions_destroy(&actions);
    close(output[1]);
    close(errors[1]);
    if (error != 0)
        throw std::runtime_error("cannot start " + owned[0]);
    m_output.descriptor = output[0];
    m_errors.descriptor = errors[0];
    for (Stream* const stream : {&m_output, &m_errors})
        stream->reader = std::thread([this, stream] { collect(*stream); });
}

ChildProcess::~ChildProcess() {
    if (m_pid > 0) {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    for (Stream* const stream : {&m_output, &m_errors}) {
        stream->reader.join();
        close(stream->descriptor);
    }
}

void ChildProcess::collect(Stream& stream) {
    char bytes[4096];
    for (ssize_t count; (count = read(stream.descriptor, bytes, sizeof bytes)) > 0;) {
        std::lock_guard lock(m_mutex);
        stream.text.append(bytes, static_cast<std::size_t>(count));
        m_changed.notify_all();
    }
    std::lock_guard lock(m_mutex);
    stream.ended = true;
    m_changed.notify_all();
}

void ChildProcess::signal(int number) {
    kill(m_pid, number);
}

std::string ChildProcess::commandLine() const {
    std::ifstream file("/proc/" + std::to_string(m_pid) + "/cmdline", std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

int ChildProcess::wait() {
    {
        // The streams end with the program.
        std::unique_lock lock(m_mutex);
        if (!m_changed.wait_for(lock, patience, [&] { return m_output.ended && m_errors.ended; }))
            kill(m_pid, SIGKILL);
    }
    int status = 0;
    rusage usage{};
    wait4(m_pid, &status, 0, &usage);
    m_pid = -1;
    m_peakKiB = usage.ru_maxrss;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

bool ChildProcess::awaitOutput(std::string const& text) const {
    auto const found = [&] { return m_output.text.find(text) != std::string::npos; };
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, patience, [&] { return found() || m_output.ended; });
    return found();
}

std::string ChildProcess::output() const {
    std::lock_guard lock(m_mutex);
    return m_output.text;
}

std::string ChildProcess::errors() const {
    std::lock_guard lock(m_mutex);
    return m_errors.text;
}

} // namespace quillon::test
