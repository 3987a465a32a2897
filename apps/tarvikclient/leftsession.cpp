#include "tarvikclient/leftsession.h"

#include "base/file.h"
#include "base/log.h"
#include "base/ownfile.h"
#include "base/visibletext.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <string>
#include <string_view>

namespace quillon {

namespace {

constexpr std::size_t longestMark = 4096;
constexpr std::size_t mostMarks = 64;
constexpr unsigned longestName = 160;

bool isMark(std::string_view name) {
    return name.starts_with("session-") && name.ends_with(".mark");
}

/// Takes what stands before the next `separator` from `text`; all of it where there is none.
std::string_view take(std::string_view& text, char separator) {
    std::string_view const piece = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(text.size(), piece.size() + 1));
    return piece;
}

/// Beyond these years a calendar does not follow.
std::optional<DateTime> takeTime(std::string_view& line) {
    constexpr long latest = 253402300799; // 9999
    std::string_view const digits = take(line, ' ');
    long seconds = 0;
    auto const [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), seconds);
    if (error != std::errc() || seconds <= 0 || seconds > latest)
        return std::nullopt;
    return DateTime(seconds);
}

String nameOf(std::string_view text) {
    return text == "-" ? String() : cutText(visibleText(String::copyOf(text)), longestName).owned();
}

/// Up to `most` of the last bytes of a file.
std::string readEnd(Descriptor const& file, std::size_t most) {
    off_t const size = lseek(file.number(), 0, SEEK_END);
    auto const length = static_cast<off_t>(most);
    std::string bytes(static_cast<std::size_t>(std::max<off_t>(std::min(size, length), 0)), '\0');
    std::size_t done = 0;
    off_t const from = std::max<off_t>(size - length, 0);
    while (done < bytes.size()) {
        ssize_t const count =
            pread(file.number(), bytes.data() + done, bytes.size() - done, from + static_cast<off_t>(done));
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    bytes.resize(done);
    return bytes;
}

} // namespace

struct LeftSessions::Mark {
    String path;
    Descriptor file; // locked: no other process tells of it too
    bool isAccident = false;
    LeftSession session;
    String log;

    void read(std::string_view text);
    void readAccident(std::string_view line);
    std::time_t age() const { return session.begun ? session.begun->seconds() : 0; }
};

void LeftSessions::Mark::read(std::string_view text) {
    std::string_view first = take(text, '\n');
    isAccident = take(first, ' ') == "running";
    session.begun = takeTime(first);
    while (!text.empty()) {
        std::string_view line = take(text, '\n');
        if (line.starts_with("log "))
            log = String::copyOf(line.substr(4));
        else
            readAccident(line);
    }
}

void LeftSessions::Mark::readAccident(std::string_view line) {
    std::string_view const kind = take(line, ' ');
    if (kind != "crashed" && kind != "exited")
        return;
    isAccident = true;
    session.end = kind == "crashed" ? LeftSession::End::crashed : LeftSession::End::exited;
    session.ended = takeTime(line);
    session.call = nameOf(take(line, ' '));
    session.module = nameOf(line);
}

LeftSessions::LeftSessions(String const& directory, Strings const& logPlaces)
    : m_directory(directory.trimRight('/').owned()) {
    try {
        collect();
        for (Mark const& mark : m_marks)
            if (mark.isAccident && (!m_told || mark.age() >= m_told->age()))
                m_told = &mark;
        readLog(logPlaces);
    } catch (std::exception const&) {
        m_told = nullptr; // the session to come is what matters
    }
}

LeftSessions::~LeftSessions() = default;

void LeftSessions::collect() {
    std::unique_ptr<DIR, int (*)(DIR*)> const directory(opendir(m_directory.str()), &closedir);
    while (dirent const* const entry = directory ? readdir(directory.get()) : nullptr)
        if (isMark(entry->d_name) && m_marks.size() < mostMarks)
            consider(entry->d_name);
}

void LeftSessions::consider(char const* name) {
    Mark mark;
    mark.path = m_directory + "/" + name;
    mark.file = openOwnFile(AT_FDCWD, mark.path.str(), O_RDONLY);
    if (!mark.file || flock(mark.file.number(), LOCK_EX | LOCK_NB) != 0)
        return; // its session runs, or it is none of ours
    mark.read(readEnd(mark.file, longestMark));
    m_marks.push_back(std::move(mark));
}

void LeftSessions::readLog(Strings const& logPlaces) {
    if (!m_told || std::find(logPlaces.begin(), logPlaces.end(), m_told->log) == logPlaces.end())
        return;
    Descriptor const file = openOwnFile(AT_FDCWD, m_told->log.str(), O_RDONLY);
    if (!file)
        return;
    std::string const text = readEnd(file, longestLog);
    std::size_t const cut = text.size() == longestLog ? text.find('\n') + 1 : 0;
    m_log = String::copyOf(std::string_view(text).substr(cut));
}

void LeftSessions::saveLog() {
    try {
        constexpr unsigned ownerOnly = 0600;
        if (!m_log.empty())
            File::replaceAllFile(m_directory + logName, m_log, ownerOnly);
    } catch (EFile const&) { // which has been logged
        m_log = String();
    }
}

std::optional<LeftSession> LeftSessions::settle() noexcept {
    try {
        std::optional<LeftSession> told;
        if (m_told) {
            saveLog();
            told = m_told->session;
            told->log = m_log.empty() ? String() : m_directory + logName;
            log(ERROR, "LeftSessions", "settle", told->describe());
        }
        for (Mark const& mark : m_marks)
            unlink(mark.path.str());
        return told;
    } catch (std::exception const&) {
        return std::nullopt;
    }
}

String LeftSession::describe() const {
    static constexpr std::array<char const*, 3> ends{"was cut off", "was ended by exit()", "crashed"};
    String text = String("The last session ") + ends[static_cast<std::size_t>(end)];
    if (!call.empty())
        text.append(" in ", call);
    if (!module.empty())
        text.append(call.empty() ? " with the module " : " of the module ", module);
    if (ended)
        text.append(" at ", ended->toString());
    if (!log.empty())
        text.append("; its log is ", log);
    return text;
}

} // namespace quillon
