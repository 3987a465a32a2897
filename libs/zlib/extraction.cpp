#include "zlib/extraction.h"

#include "base/log.h"
#include "base/safepath.h"
#include "base/stringconversion.h"
#include "zlib/utf8locale.h"

#include <algorithm>
#include <vector>

namespace quillon::zlib {

namespace {

constexpr unsigned shownLength = 200;

/// An entry's name for a log line: what could forge another line or flood the log is left out.
String shown(String const& name) {
    String text = "\"" + name.range(0, shownLength) + "\"";
    for (unsigned i = 0; i < text.length(); ++i)
        if (static_cast<unsigned char>(text[i]) < ' ' || text[i] == 0x7F)
            text.setAt(i, '?');
    return text;
}

bool refuse(String const& reason) {
    log(ERROR, "Zip", "unzip", reason);
    return false;
}

/// The directory that holds `name`; empty at the top.
String parentOf(String const& name) {
    unsigned const slash = name.rfind('/');
    return slash == String::npos ? String() : name.range(0, slash);
}

} // namespace

Extraction::Extraction(String const& archive, String const& destination, Limits const& limits)
    : m_archive(archive.replace('\\', '/').owned()),
      m_destination(destination.replace('\\', '/').owned()),
      m_limits(limits) {}

bool Extraction::run() {
    Utf8Locale const locale;
    try {
        return isArchiveReadable() && survey() && extract();
    } catch (Exception const& e) {
        return refuse("cannot extract " + m_archive + ": " + e.toString());
    }
}

bool Extraction::isArchiveReadable() {
    if (m_archive.empty() || m_archive.find('\0') != String::npos)
        return refuse("no archive is named");
    if (m_destination.empty() || m_destination.find('\0') != String::npos)
        return refuse("no destination is named for " + m_archive);
    if (stat(m_archive.str(), &m_archiveInfo) != 0 || !S_ISREG(m_archiveInfo.st_mode))
        return refuse("there is no archive " + m_archive);
    return true;
}

bool Extraction::survey() {
    ZipReader reader(m_archive);
    ZipEntry entry;
    Tally tally;
    ZipReader::Step step;
    while ((step = reader.next(entry)) == ZipReader::entry)
        if (!isAcceptable(entry, tally))
            return false;
    if (step == ZipReader::failed)
        return refuse("cannot read " + m_archive + ": " + reader.error());
    return tally.entries > 0 || refuse(m_archive + " holds nothing");
}

bool Extraction::extract() {
    File::ensureDirectory(m_destination);
    ZipReader reader(m_archive);
    ZipEntry entry;
    Tally tally; // the file may have changed since it was surveyed: nothing is taken on trust
    ZipReader::Step step;
    while ((step = reader.next(entry)) == ZipReader::entry)
        if (!isAcceptable(entry, tally) || !write(reader, entry))
            return false;
    return step == ZipReader::end || refuse("cannot read " + m_archive + ": " + reader.error());
}

bool Extraction::isAcceptable(ZipEntry const& entry, Tally& tally) const {
    String const about = shown(entry.name) + " in " + m_archive;
    if (entry.name.empty())
        return refuse("an unreadable name in " + m_archive);
    if (!isSafeRelativePath(entry.name))
        return refuse("a name that leaves the destination: " + about);
    if (std::count(entry.name.begin(), entry.name.end(), '/') > m_limits.depth)
        return refuse("too many directories in the name " + about);
    if (entry.kind != ZipEntry::file && entry.kind != ZipEntry::directory)
        return refuse("neither a file nor a directory: " + about);
    if (entry.encrypted)
        return refuse("an encrypted entry: " + about);
    if (isArchiveItself(pathOf(entry.name)))
        return refuse("an entry would overwrite the archive: " + about);

    for (String d = parentOf(entry.name); !d.empty() && tally.directories.insert(d).second;)
        d = parentOf(d);
    if (++tally.entries > m_limits.entries || tally.directories.size() > m_limits.entries)
        return refuse("more than " + toString(m_limits.entries) + " entries in " + m_archive);
    if (entry.size > m_limits.bytes - tally.bytes)
        return refuseSize();
    tally.bytes += std::max(entry.size, 0LL);
    return true;
}

bool Extraction::isArchiveItself(String const& path) const {
    struct stat info {};
    return lstat(path.str(), &info) == 0 && info.st_dev == m_archiveInfo.st_dev &&
           info.st_ino == m_archiveInfo.st_ino;
}

bool Extraction::write(ZipReader& reader, ZipEntry const& entry) {
    if (entry.kind == ZipEntry::directory)
        return makeDirectories(entry.name.trimRight('/'));
    return makeDirectories(parentOf(entry.name)) && writeFile(reader, entry);
}

bool Extraction::makeDirectories(String const& directory) {
    std::vector<String> missing;
    for (String d = directory; !d.empty() && !m_made.count(d); d = parentOf(d))
        missing.push_back(d);
    std::reverse(missing.begin(), missing.end());
    for (String const& d : missing) {
        String const path = pathOf(d);
        struct stat info {};
        // A link to a directory is not followed: it may lead anywhere.
        if (lstat(path.str(), &info) != 0)
            File::createDirectory(path);
        else if (!S_ISDIR(info.st_mode))
            return refuse("not a directory: " + path);
        m_made.insert(d);
    }
    return true;
}

bool Extraction::writeFile(ZipReader& reader, ZipEntry const& entry) {
    String const path = pathOf(entry.name);
    struct stat info {};
    if (lstat(path.str(), &info) == 0) {
        if (S_ISDIR(info.st_mode))
            return refuse("a directory is in the way: " + path);
        // Removed and not rewritten: another process may have the old file mapped, and what stands there may
        // be a link to somewhere else.
        File::remove(path);
    }
    File file;
    if (!file.open(path, File::out))
        return refuse("cannot write " + path);
    bool complete = false;
    try {
        complete = copyContent(reader, entry, file);
    } catch (EFile const&) {
        refuse("cannot write " + path);
    }
    if (!complete) { // half a file is worse than none
        file.close();
        File::remove(path);
    }
    return complete;
}

bool Extraction::copyContent(ZipReader& reader, ZipEntry const& entry, File& file) {
    std::vector<char> buffer(65536);
    long count;
    while ((count = reader.read(buffer.data(), buffer.size())) > 0) {
        m_written += count;
        if (m_written > m_limits.bytes)
            return refuseSize();
        file.write(buffer.data(), static_cast<unsigned>(count));
    }
    if (count < 0)
        return refuse("cannot read " + shown(entry.name) + " in " + m_archive + ": " + reader.error());
    return file.close() || refuse("cannot write " + shown(entry.name));
}

bool Extraction::refuseSize() const {
    return refuse("more than " + toString(static_cast<unsigned long>(m_limits.bytes)) + " bytes in " +
                  m_archive);
}

} // namespace quillon::zlib
