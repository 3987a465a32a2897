#include "tarvikclient/installrecord.h"

#include "base/file.h"
#include "base/log.h"
#include "base/safepath.h"
#include "base/splitter.h"
#include "base/strings.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <set>

namespace quillon {

namespace {

constexpr char fileName[] = "/.tarvik-record";
constexpr unsigned long maxFileSize = 16UL * 1024 * 1024;

template <class Use>
void forEachParent(String const& path, Use use) {
    for (String parent = File::getFolderName(path); !parent.empty(); parent = File::getFolderName(parent))
        use(parent);
}

/// Whether a file keeps one of several paths from being a file.
class InTheWay {
public:
    explicit InTheWay(Strings const& paths) : m_targets(paths.begin(), paths.end()) {
        for (String const& path : paths)
            forEachParent(path, [this](String const& parent) { m_directories.insert(parent); });
    }

    bool operator()(String const& file) const {
        bool result = m_directories.contains(file);
        forEachParent(file, [&](String const& parent) { result = result || m_targets.contains(parent); });
        return result;
    }

private:
    std::set<String> m_targets;
    std::set<String> m_directories;
};

} // namespace

template <class Unwanted>
void InstallRecord::forget(Unwanted unwanted, bool modulesToo) {
    for (Group& group : m_groups) {
        if (!modulesToo && group.name.starts(module))
            continue;
        Strings kept;
        for (String const& file : group.files)
            if (!unwanted(file))
                kept.add(file);
        group.files = kept;
    }
}

// Groups one after the other: the name, the files, an empty text; each ended by a NUL, which no name holds.
InstallRecord::InstallRecord(String const& directory) : m_directory(directory.owned()) {
    String const path = m_directory + fileName;
    if (!File::exists(path) || File::getFileSize(path) > maxFileSize)
        return;
    try {
        read(File::readAllFile(path));
    } catch (EFile const&) {
        // Without the list nothing is taken away; the next one that is saved is whole again.
    }
}

void InstallRecord::read(String const& text) {
    bool inGroup = false;
    for (CharSplitter items(text, '\0'); items.valid();) {
        String const item = items.next().clone();
        if (item.empty())
            inGroup = false;
        else if (!std::exchange(inGroup, true))
            m_groups.push_back({item, {}});
        else if (isSafeRelativePath(item))
            m_groups.back().files.add(item);
    }
}

void InstallRecord::save() const {
    String text;
    for (Group const& group : m_groups) {
        text.append(group.name, '\0');
        for (String const& file : group.files)
            text.append(file, '\0');
        text.append('\0');
    }
    File::replaceAllFile(m_directory + fileName, text);
}

Strings InstallRecord::filesOf(char kind, String const& name) const {
    for (Group const& group : m_groups)
        if (group.name == String(kind) + name)
            return group.files;
    return {};
}

void InstallRecord::set(char kind, String const& name, Strings const& files) {
    String const full = String(kind) + name;
    std::erase_if(m_groups, [&](Group const& group) { return group.name == full; });
    // What has been replaced must not go with the group that it belonged to.
    std::set<String> const taken(files.begin(), files.end());
    forget([&](String const& file) { return taken.contains(file); });
    m_groups.push_back({full, files});
    prune(kind);
}

unsigned InstallRecord::boundOf(char kind) {
    return kind == certificate ? 64 : 8;
}

void InstallRecord::prune(char kind) {
    auto const isOfKind = [kind](Group const& group) { return group.name.starts(kind); };
    auto count = std::count_if(m_groups.begin(), m_groups.end(), isOfKind);
    for (; count > boundOf(kind); --count) {
        auto const oldest = std::find_if(m_groups.begin(), m_groups.end(), isOfKind);
        log(TRACE, "InstallRecord", "prune",
            "removing what was installed long ago: " + oldest->name.range(1));
        for (String const& file : oldest->files)
            remove(file);
        m_groups.erase(oldest);
    }
}

bool InstallRecord::isOfModule(String const& path, String const* but) const {
    InTheWay const inTheWay({path});
    for (Group const& group : m_groups)
        if (group.name.starts(module) && !(but && group.name.range(1) == *but))
            for (String const& file : group.files)
                if (file == path || inTheWay(file))
                    return true;
    return false;
}

void InstallRecord::makeRoom(Strings const& paths, bool modulesToo) {
    InTheWay const inTheWay(paths);
    forget(
        [&](String const& file) {
            if (!inTheWay(file))
                return false;
            remove(file);
            return true;
        },
        modulesToo);
}

void InstallRecord::remove(String const& path) const {
    if (!isSafeRelativePath(path) ||
        (unlink((m_directory + "/" + path).toString().str()) != 0 && errno != ENOENT))
        return;
    for (String parent = File::getFolderName(path); !parent.empty(); parent = File::getFolderName(parent))
        if (rmdir((m_directory + "/" + parent).toString().str()) != 0)
            return; // there is more in it
}

} // namespace quillon
