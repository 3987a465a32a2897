// The open file.
#include "base/file.h"

#include "base/descriptor.h"
#include "base/failure.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace quillon {

namespace {

char const* stdioMode(File::ModeOption mode) {
    bool const reads = mode & File::in;
    if (mode & File::append)
        return reads ? "a+be" : "abe";
    if (!(mode & File::out))
        return "rbe";
    if (mode & File::exclusive)
        return "wbxe";
    if (mode & File::truncate)
        return reads ? "w+be" : "wbe";
    return "r+be";
}

/// What fits into a String, with what its block is rounded up by.
constexpr unsigned long longestText = String::npos - 2 * MemoryBlock::granularity;

constexpr mode_t openToAll = S_IRWXU | S_IRWXG | S_IRWXO;

} // namespace

bool File::open(String const& path, ModeOption mode) {
    close();
    bool const writes = mode & (out | append);
    if (writes && !(mode & (in | append)))
        mode |= truncate;
    m_path = path.replace('\\', '/').owned();
    if (m_path.find('\0') != String::npos) // C code would open another file
        return false;
    m_file = std::fopen(m_path.str(), stdioMode(mode));
    if (!m_file)
        return false;
    struct stat info {};
    if (fstat(fileno(m_file), &info) != 0 || S_ISDIR(info.st_mode)) {
        close();
        return false;
    }
    if (writes)
        fchmod(fileno(m_file), openToAll);
    m_size = static_cast<unsigned long>(info.st_size);
    m_position = 0;
    m_maxSize = unlimited;
    if (mode & (atEnd | append))
        seek(0, end);
    return true;
}

bool File::close() {
    FILE* const file = std::exchange(m_file, nullptr);
    m_size = m_position = 0;
    return !file || std::fclose(file) == 0;
}

void File::closeEmpty() {
    // What is still to be written is written when the stream is closed: the file is cut after that.
    Descriptor const same(m_file ? fcntl(fileno(m_file), F_DUPFD_CLOEXEC, 0) : -1);
    close();
    if (same && ftruncate(same.number(), 0) != 0)
        log(ERROR, "File", "closeEmpty", "cannot empty " + m_path);
}

bool File::seek(int offset, SeekDir from) {
    return seekTo(offset, from);
}

bool File::seekTo(long offset, SeekDir from) {
    if (!m_file || std::fseek(m_file, offset, from) != 0)
        return false;
    m_position = static_cast<unsigned long>(std::ftell(m_file));
    return true;
}

unsigned File::tell() const {
    return static_cast<unsigned>(m_position);
}

bool File::flush() {
    return m_file && std::fflush(m_file) == 0;
}

bool File::sync() {
    return m_file && std::fflush(m_file) == 0 && fsync(fileno(m_file)) == 0;
}

unsigned File::sizeToRead() const {
    unsigned long const left = m_size > m_position ? m_size - m_position : 0;
    return static_cast<unsigned>(std::min<unsigned long>(left, String::npos - 1));
}

void File::readBytes(void* bytes, std::size_t count) {
    if (count == 0)
        return;
    // A file that has shrunk since it was opened ends here and not in an endless loop of its reader.
    if (!m_file || std::fread(bytes, 1, count, m_file) != count)
        fail<EFile>("File", "read", "cannot read " + m_path);
    m_position += count;
}

void File::writeBytes(void const* bytes, std::size_t count) {
    if (count == 0)
        return;
    if (count > m_maxSize || m_position > m_maxSize - count)
        fail<EFile>("File", "write", "longer than it may be: " + m_path);
    if (!m_file || std::fwrite(bytes, 1, count, m_file) != count)
        fail<EFile>("File", "write", "cannot write " + m_path);
    m_position += count;
    m_size = std::max(m_size, m_position);
}

void File::read(bool& value) {
    unsigned char byte = 0;
    read(byte);
    value = byte != 0;
}

unsigned File::restToRead() const {
    if (m_size > m_position && m_size - m_position > longestText)
        fail<EFile>("File", "read", "too large to be read at once: " + m_path);
    return sizeToRead();
}

void File::read(Memory& value) {
    read(value, restToRead());
}

void File::read(String& value) {
    unsigned const count = restToRead();
    String text;
    char* const bytes = text.reserve(count);
    readBytes(bytes, count);
    text.resize(count);
    value = std::move(text);
}

void File::read(Memory& bytes, unsigned count) {
    count = std::min(count, sizeToRead());
    bytes.resize(count);
    readBytes(bytes.array(), count);
}

// Here, because support knows that it fails in this file.
void File::remove(String const& path) {
    if (path.find('\0') != String::npos || std::remove(path.replace('\\', '/').str()) != 0)
        failQuietly<EFile>();
}

String File::readAllFile(String const& path) {
    File file;
    if (!file.open(path, in)) {
        log(TRACE, "File", "readAllFile", "cannot open " + path);
        failQuietly<EFile>();
    }
    String content;
    file.read(content);
    return content;
}

void File::writeAllFile(String const& path, String const& content) {
    File file;
    if (!file.open(path, out)) {
        log(TRACE, "File", "writeAllFile", "cannot open " + path);
        failQuietly<EFile>();
    }
    file.write(content);
    if (!file.close())
        fail<EFile>("File", "writeAllFile", "cannot write " + path);
}

} // namespace quillon
