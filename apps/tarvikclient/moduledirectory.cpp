#include "tarvikclient/moduledirectory.h"

#include "base/deadline.h"
#include "base/failure.h"
#include "base/file.h"
#include "base/ownfile.h"
#include "base/splitter.h"
#include "base/strings.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>
#include <random>
#include <thread>

namespace quillon {

namespace {

constexpr std::chrono::milliseconds lockPause{20};

constexpr char logClass[] = "ModuleDirectory";

bool isPrivate(int descriptor) {
    struct stat info {};
    return fstat(descriptor, &info) == 0 && info.st_uid == geteuid() && !(info.st_mode & (S_IWGRP | S_IWOTH));
}

} // namespace

ModuleDirectory::ModuleDirectory(String const& path)
    : m_descriptor(::open(path.str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)), m_path(path.owned()) {
    if (m_descriptor && isPrivate(number()))
        return;
    fail<EFile>(logClass, "ModuleDirectory",
                m_descriptor ? "others may change what is in " + path : "no directory " + path);
}

bool ModuleDirectory::lock(std::chrono::milliseconds patience) {
    Deadline const deadline(patience);
    while (flock(number(), LOCK_EX | LOCK_NB) != 0) {
        if (deadline.hasPassed())
            return false;
        std::this_thread::sleep_for(lockPause);
    }
    return true;
}

void ModuleDirectory::unlock() {
    flock(number(), LOCK_UN);
}

Descriptor ModuleDirectory::open(String const& name) const {
    return openOwnFile(number(), name.str(), O_RDONLY);
}

Descriptor ModuleDirectory::create(String const& name) const {
    Descriptor file = openOwnFile(number(), name.str(), O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IXUSR);
    if (!file)
        log(ERROR, logClass, "create", "cannot write " + m_path + "/" + name);
    return file;
}

void ModuleDirectory::remove(String const& name) const {
    unlinkat(number(), name.str(), 0);
}

Strings ModuleDirectory::list(char const* purpose) const {
    String const prefix = String(ownPrefix) + purpose + "-";
    Strings names;
    struct Close {
        void operator()(DIR* open) const { closedir(open); }
    };
    Descriptor own(openat(number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)); // has a position of its own
    std::unique_ptr<DIR, Close> const entries(own ? fdopendir(own.number()) : nullptr);
    if (!entries)
        return names;
    own.release();
    while (dirent const* const entry = readdir(entries.get()))
        if (String const name(entry->d_name); name.starts(prefix))
            names.add(name.clone());
    return names;
}

String ModuleDirectory::freshName(char const* purpose) {
    std::random_device source;
    unsigned const numbers[] = {source(), source(), source(), source()};
    return String(ownPrefix) + purpose + "-" + Memory(numbers, sizeof numbers).toHex();
}

bool ModuleDirectory::isReserved(String const& name) {
    for (FirstOfSplitter components(name, "/\\"); components.valid();)
        if (components.next().startsNoCase2(ownPrefix))
            return true;
    return false;
}

} // namespace quillon
