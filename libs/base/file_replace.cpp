// Replacing a file's content in one step.
#include "base/file.h"

#include "base/failure.h"
#include "base/ownfile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace quillon {

namespace {

constexpr char freshSuffix[] = ".new";
constexpr char freshLetters[] = "XXXXXX"; // what makes the name unique

/// A file of a new name beside the target, for its owner alone. It is locked as long as somebody writes it,
/// which tells it from what a killed process has left behind, and goes with its object unless it has taken
/// the target's place. errno says why something was refused.
class FreshFile {
public:
    explicit FreshFile(String const& target);
    ~FreshFile() {
        if (m_file)
            unlink(m_path.str());
    }
    FreshFile(FreshFile const&) = delete;
    FreshFile& operator=(FreshFile const&) = delete;

    bool write(std::string_view content);
    bool takePlaceOf(String const& target, mode_t mode);

private:
    bool isThere() const {
        struct stat info {};
        return fstat(m_file.number(), &info) != 0 || info.st_nlink != 0;
    }

    String m_path;
    Descriptor m_file;
};

FreshFile::FreshFile(String const& target) {
    do {
        m_path = (target + freshSuffix + freshLetters).toString().clone();
        std::string name(m_path.view());
        m_file = Descriptor(mkostemp(name.data(), O_CLOEXEC));
        m_path = String::copyOf(name);
        // Where files cannot be locked nobody can tell it from a leftover, and it is written all the same.
    } while (m_file && flock(m_file.number(), LOCK_EX) == 0 && !isThere());
}

bool FreshFile::write(std::string_view content) {
    return m_file && writeAll(m_file, content) && fsync(m_file.number()) == 0;
}

bool FreshFile::takePlaceOf(String const& target, mode_t mode) {
    if (fchmod(m_file.number(), mode) != 0 || std::rename(m_path.str(), target.str()) != 0)
        return false;
    m_file = Descriptor();
    return true;
}

bool isFreshNameOf(String const& target, String const& name) {
    unsigned const plain = target.length() + sizeof freshSuffix - 1;
    return name.starts(target) && name.starts(freshSuffix, target.length()) &&
           (name.length() == plain || name.length() == plain + sizeof freshLetters - 1);
}

void removeLeftover(String const& path) {
    Descriptor const file(::open(path.str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat info {};
    if (file && fstat(file.number(), &info) == 0 && S_ISREG(info.st_mode) &&
        flock(file.number(), LOCK_EX | LOCK_NB) == 0)
        unlink(path.str());
}

/// The password of a settings file must not stay in what a process that was killed has left.
void removeLeftoversOf(String const& target) {
    unsigned const slash = target.rfind('/');
    String const directory = slash == String::npos ? String("./") : target.range(0, slash + 1);
    String const targetName = target.rright('/');
    List<String> names;
    File::getFilesList(directory, names);
    for (String const& name : names)
        if (isFreshNameOf(targetName, name))
            removeLeftover(directory + name);
}

} // namespace

void File::replaceAllFile(String const& path, String const& content, unsigned mode) {
    String const target = path.replace('\\', '/');
    errno = EINVAL; // for a name that is none
    if (target.find('\0') == String::npos) {
        removeLeftoversOf(target);
        FreshFile fresh(target);
        if (fresh.write(content.view()) && fresh.takePlaceOf(target, mode))
            return;
    }
    fail<EFile>("File", "replaceAllFile",
                "cannot write " + path + ": " + String::copyOf(std::generic_category().message(errno)));
}

} // namespace quillon
