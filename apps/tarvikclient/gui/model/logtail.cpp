#include "tarvikclient/gui/model/logtail.h"

#include "base/ownfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>

namespace quillon {

namespace {

constexpr std::string_view replacement = "\xef\xbf\xbd";

/// The characters of more than one byte that begin with `from` to `to`: their length, and the range of their
/// second byte; any further one is a continuation byte.
struct Lead {
    unsigned char from, to;
    std::size_t length;
    unsigned char low, high;
};

constexpr Lead leads[] = {
    {0xc2, 0xdf, 2, 0x80, 0xbf}, {0xe0, 0xe0, 3, 0xa0, 0xbf}, {0xe1, 0xec, 3, 0x80, 0xbf},
    {0xed, 0xed, 3, 0x80, 0x9f}, {0xee, 0xef, 3, 0x80, 0xbf}, {0xf0, 0xf0, 4, 0x90, 0xbf},
    {0xf1, 0xf3, 4, 0x80, 0xbf}, {0xf4, 0xf4, 4, 0x80, 0x8f},
};

bool isWithin(char byte, unsigned char from, unsigned char to) {
    auto const value = static_cast<unsigned char>(byte);
    return value >= from && value <= to;
}

bool isContinuation(char byte) {
    return isWithin(byte, 0x80, 0xbf);
}

struct Character {
    std::size_t length; ///< of what stands there of it
    bool valid;
    bool whole;
};

/// What stands at the begin of `bytes`, which are not empty.
Character characterAt(std::string_view bytes) {
    if (isWithin(bytes[0], 0x01, 0x7f))
        return {1, true, true};
    auto const* const lead = std::find_if(std::begin(leads), std::end(leads),
                                          [&](Lead const& l) { return isWithin(bytes[0], l.from, l.to); });
    if (lead == std::end(leads))
        return {1, false, true};
    if (bytes.size() > 1 && !isWithin(bytes[1], lead->low, lead->high))
        return {1, false, true};
    std::size_t length = std::min<std::size_t>(bytes.size(), 2);
    while (length < lead->length && length < bytes.size() && isContinuation(bytes[length]))
        ++length;
    if (length == lead->length)
        return {length, true, true};
    return {length, false, length < bytes.size()};
}

/// Takes whole characters from `bytes`, and leaves the one that is cut off at the end.
std::string takeUtf8(std::string& bytes) {
    std::string text;
    text.reserve(bytes.size());
    std::string_view left = bytes;
    while (!left.empty()) {
        Character const character = characterAt(left);
        if (!character.whole)
            break;
        text += character.valid ? left.substr(0, character.length) : replacement;
        left.remove_prefix(character.length);
    }
    bytes.erase(0, bytes.size() - left.size());
    return text;
}

} // namespace

LogTail::LogTail(std::string path) : m_path(std::move(path)) {}

LogTail::News LogTail::poll() {
    News news;
    news.restarted = beginAnew();
    if (m_file) {
        m_incomplete += readPiece();
        std::string const text = takeUtf8(m_incomplete);
        news.text = wxString::FromUTF8(text.data(), text.size());
    }
    return news;
}

bool LogTail::beginAnew() {
    if (m_file && isCurrent())
        return false;
    if (!open())
        return false;
    begin();
    return true;
}

bool LogTail::isCurrent() const {
    struct stat named, held;
    return lstat(m_path.c_str(), &named) == 0 && fstat(m_file.number(), &held) == 0 &&
           named.st_ino == held.st_ino && named.st_dev == held.st_dev && held.st_size >= m_position;
}

bool LogTail::open() {
    // Anybody may put something in the place of a log in /tmp, and it is then no word of this program's.
    m_file = openOwnFile(AT_FDCWD, m_path.c_str(), O_RDONLY);
    return static_cast<bool>(m_file);
}

void LogTail::begin() {
    constexpr auto backlog = static_cast<off_t>(longestBacklog);
    off_t const size = lseek(m_file.number(), 0, SEEK_END);
    m_incomplete.clear();
    m_inLine = size > backlog;
    m_position = m_inLine ? size - backlog - 1 : 0; // the byte before says whether a line begins there
}

std::string LogTail::readPiece() {
    off_t const size = lseek(m_file.number(), 0, SEEK_END);
    if (size <= m_position)
        return {};
    std::string piece(std::min(static_cast<std::size_t>(size - m_position), longestPiece), '\0');
    ssize_t const count = pread(m_file.number(), piece.data(), piece.size(), m_position);
    piece.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    m_position += static_cast<off_t>(piece.size());
    if (m_inLine && !piece.empty())
        skipToLine(piece);
    return piece;
}

void LogTail::skipToLine(std::string& piece) {
    m_inLine = false;
    std::size_t const lineEnd = piece.find('\n');
    if (lineEnd < piece.size() - 1) {
        piece.erase(0, lineEnd + 1);
        return;
    }
    // One line that is longer than the piece: its end is better than nothing.
    piece.erase(0, 1);
    piece.erase(piece.begin(), std::find_if_not(piece.begin(), piece.end(), isContinuation));
}

} // namespace quillon
