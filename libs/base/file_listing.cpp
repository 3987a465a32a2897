// What a directory holds.
#include "base/file.h"

#include "base/log.h"

#include <dirent.h>
#include <sys/stat.h>

#include <memory>
#include <vector>

namespace quillon {

namespace {

enum class Kind { file, directory, other };

Kind kindOf(String const& path) {
    struct stat info {};
    if (lstat(path.str(), &info) != 0)
        return Kind::other;
    return S_ISDIR(info.st_mode) ? Kind::directory : Kind::file;
}

/// Calls use(name) for each entry; logs under `method` a directory that cannot be read.
template <class Use>
void forEachEntry(String const& directory, char const* method, Use use) {
    struct Close {
        void operator()(DIR* open) const { closedir(open); }
    };
    bool const isPath = directory.find('\0') == String::npos; // C code would list another directory
    std::unique_ptr<DIR, Close> const open(isPath ? opendir(directory.str()) : nullptr);
    if (!open) {
        log(ERROR, "File", method, "unable to opendir() " + directory);
        return;
    }
    while (dirent const* const entry = readdir(open.get())) {
        String const name(entry->d_name);
        if (name != "." && name != "..")
            use(name.clone());
    }
}

/// Adds the names of the entries for which `wanted` holds of their kind and name.
template <class Wanted>
void list(String const& path, char const* method, List<String>& names, Wanted wanted) {
    String const directory = path.replace('\\', '/');
    forEachEntry(directory, method, [&](String const& name) {
        if (wanted(kindOf(directory + "/" + name), name))
            names.add(name);
    });
}

} // namespace

void File::getFullList(String const& directory, List<String>& names) {
    list(directory, "getFullList", names, [](Kind, String const&) { return true; });
}

void File::getFilesList(String const& directory, List<String>& names) {
    list(directory, "getFilesList", names, [](Kind kind, String const&) { return kind == Kind::file; });
}

void File::getSubDirectoriesList(String const& directory, List<String>& names) {
    list(directory, "getSubDirectoriesList", names,
         [](Kind kind, String const&) { return kind == Kind::directory; });
}

void File::getFilesListByExtension(String const& directory, String const& extension, List<String>& names) {
    list(directory, "getFilesListByExtension", names, [&](Kind kind, String const& name) {
        return kind == Kind::file && getFileExtension(name) == extension;
    });
}

void File::getRecursiveFilesList(String const& directory, List<String>& names) {
    String const root = directory.replace('\\', '/');
    std::vector<String> pending{String()}; // relative to the root, with a "/" behind
    while (!pending.empty()) {
        String const below = pending.back();
        pending.pop_back();
        String const visited = root + "/" + below;
        forEachEntry(visited, "getRecursiveFilesList", [&](String const& name) {
            Kind const kind = kindOf(visited + name);
            if (kind == Kind::directory)
                pending.push_back(below + name + "/");
            else if (kind == Kind::file)
                names.add(below + name);
        });
    }
}

} // namespace quillon
