// What installs have put on the disk.
#pragma once

#include "base/string.h"
#include "base/strings.h"

#include <vector>

namespace quillon {

/// A list, kept in the directory itself, of the files that downloads and installs have put below a directory
/// of modules, so that they can be told from what modules keep there: only these are taken away to make room,
/// and their number is bounded. Each belongs to a group: a downloaded archive, a certificate, or all files of
/// one module; groups stand in the order in which they came. One process at a time, see
/// ModuleDirectory::lock().
class InstallRecord {
public:
    /// A group's name begins with its kind.
    static constexpr char archive = 'a';
    static constexpr char certificate = 'c';
    static constexpr char module = 'm';

    /// Reads the list of `directory`, which has no "/" behind; one that is missing or spoiled is empty.
    explicit InstallRecord(String const& directory);

    /// The files of a group; none when there is no such group.
    Strings filesOf(char kind, String const& name) const;
    /// From now on the group is the newest one and has these files, paths below the directory. The oldest
    /// groups of the kind beyond its bound are removed from the list and the disk.
    void set(char kind, String const& name, Strings const& files);
    /// Whether `path` is a module's file, or cannot be a file because of one; modules of the group `but` do
    /// not count.
    bool isOfModule(String const& path, String const* but = nullptr) const;
    /// Removes recorded files, those of modules only with `modulesToo`, that keep one of `paths`, below the
    /// directory, from being a file: those below it and those that stand where its directories go; then the
    /// directories that are empty by that.
    void makeRoom(Strings const& paths, bool modulesToo);
    /// Removes a file below the directory, if there is one, and the directories that are empty by that.
    void remove(String const& path) const;
    /// Throws EFile when the list cannot be written.
    void save() const;

private:
    struct Group {
        String name; // kind and name
        Strings files;
    };

    static unsigned boundOf(char kind);
    void read(String const& text);
    void prune(char kind);
    /// Takes the files of which `unwanted` holds off the list.
    template <class Unwanted>
    void forget(Unwanted unwanted, bool modulesToo = true);

    String const m_directory;
    std::vector<Group> m_groups;
};

} // namespace quillon
