// A directory that holds modules.
#pragma once

#include "base/descriptor.h"
#include "base/string.h"
#include "base/strings.h"

#include <chrono>

namespace quillon {

/// A directory whose entries nobody but the user can change, held by a descriptor: what its path leads to
/// later does not matter. One thread at a time.
class ModuleDirectory {
public:
    /// What the client itself puts beside modules begins so; nothing from the network may.
    static constexpr char ownPrefix[] = ".tarvik-";

    /// Throws EFile, after a log line, when there is no such directory, when it belongs to another user or
    /// others may write in it.
    explicit ModuleDirectory(String const& path);
    /// Unlocks: a process that a module has forked holds the lock with this one as long as it lives.
    ~ModuleDirectory() { unlock(); }
    ModuleDirectory(ModuleDirectory const&) = delete;
    ModuleDirectory& operator=(ModuleDirectory const&) = delete;

    int number() const noexcept { return m_descriptor.number(); }
    /// Keeps other processes of the user out, which install or load here, until unlock() or the object's
    /// end. False when another one still holds on after `patience`.
    bool lock(std::chrono::milliseconds patience = std::chrono::seconds(10));
    void unlock();

    /// A plain file of the user's own; none otherwise.
    Descriptor open(String const& name) const;
    /// Makes a file that was not there, for its user to write now and to read and execute later. None, after
    /// a log line, when it cannot be made.
    Descriptor create(String const& name) const;
    void remove(String const& name) const;
    /// The names that freshName() has made for `purpose` and that are still there.
    Strings list(char const* purpose) const;

    /// A name of the client's own that nobody can foresee: ownPrefix, `purpose`, random digits.
    static String freshName(char const* purpose);
    /// Whether a name from the network would have a component that begins with ownPrefix.
    static bool isReserved(String const& name);

private:
    Descriptor m_descriptor;
    String m_path; // for messages
};

} // namespace quillon
