#include "tarvikclient/moduleinstall.h"

#include "base/failure.h"
#include "base/file.h"
#include "base/strings.h"
#include "tarvikclient/installrecord.h"
#include "tarvikclient/policy.h"
#include "tarvikclient/verifiedmodule.h"
#include "zlib/zip.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <set>

namespace quillon {

namespace {

constexpr char freshPurpose[] = "install";
constexpr unsigned long maxCertificateSize = 16UL * 1024 * 1024;
/// The sum of the lengths of all paths of one module; the record of all of them stays readable.
constexpr unsigned long maxNames = 1024UL * 1024;

/// One spelling for each path, as the record and the archive have it.
String normalised(String const& path) {
    std::filesystem::path const native(path.replace('\\', '/').view());
    return String::copyOf(native.lexically_normal().native());
}

/// Whether a name of a download can be a file's; logs one that is a directory's.
bool isFileName(String const& name) {
    String const last = File::getFileName(name);
    if (!last.empty() && last != ".")
        return true;
    log(ERROR, "DownloadManager", "downloadFromConfig", "Name is no file's: '" + name + "'");
    return false;
}

/// Whether two paths cannot be files both.
bool collide(String const& one, String const& other) {
    return one == other || one.starts(other + "/") || other.starts(one + "/");
}

/// The directory of all modules of a kind, which one process at a time changes, and its record.
class LockedBase {
public:
    explicit LockedBase(String const& path)
        : directory((File::ensureDirectory(path), path)), record((lock(path), path)) {}

    ModuleDirectory directory;
    InstallRecord record;

private:
    void lock(String const& path) {
        if (!directory.lock())
            fail<EFile>("ModuleInstall", "LockedBase", "another process holds " + path);
    }
};

/// To be called before a download is there: so nothing that a killed process leaves is unknown.
void expect(InstallRecord& record, char kind, String const& name) {
    record.makeRoom({name}, false);
    record.set(kind, name, {name});
    record.save();
}

/// Makes sure that an install survives the machine's end: a module that is cut off would be found present and
/// never fetched again.
void sync(String const& path) {
    File file;
    if (!file.open(path, File::in) || !file.sync())
        fail<EFile>("ModuleInstall", "sync", "cannot write " + path);
}

} // namespace

ModuleInstall::ModuleInstall(ModulePlace const& place, Policy const& policy)
    : m_place{place.kind, normalised(place.base), normalised(place.pattern), normalised(place.path)},
      m_shownPath(place.path.owned()),
      m_policy(policy) {}

ModuleInstall::~ModuleInstall() {
    removeFetched();
    try {
        if (!m_fresh.empty())
            File::eraseDirectory(m_fresh);
    } catch (EFile const&) {
        // The next install takes it away.
    }
}

bool ModuleInstall::isOutdated() const {
    if (!m_policy.companionsOnlyByManifest())
        return false;
    SignedDll record;
    record.loadFromFile(m_shownPath + SignedDll::fileSuffix);
    std::set<String> allowed{belowBase(m_place.path), belowBase(m_place.path + SignedDll::fileSuffix)};
    if (record.manifest) // which is verified when the module is loaded
        for (ModuleCompanion const& companion : record.manifest->companions)
            allowed.insert(belowBase(installed(companion.name)));
    Strings const files = InstallRecord(m_place.base).filesOf(InstallRecord::module, group());
    return std::any_of(files.begin(), files.end(),
                       [&](String const& file) { return !allowed.contains(file); });
}

void ModuleInstall::fetch(DownloadManager& downloads, DownloadManager::DownloadConfig const& archive) {
    if (!isFileName(archive.filename))
        return;
    String path = prepare(normalised(archive.filename));
    if (path.empty()) {
        path = m_fresh + "/archive";
        if (!downloads.downloadFileTo(archive.urlpath + archive.filename, path))
            return;
    } else if (!DownloadManager::isPresent(archive, path)) {
        path = downloads.downloadFromConfig(archive, m_place.base);
        rememberFetched(path);
    }
    m_unpacked = !path.empty() && zlib::Zip::unzip(path, unpacked(""));
}

void ModuleInstall::rememberFetched(String const& path) {
    struct stat info {};
    if (path.empty() || lstat(path.str(), &info) != 0)
        return;
    m_fetched = path;
    m_fetchedFile = {info.st_dev, info.st_ino};
}

/// What another session has fetched there meanwhile stays.
void ModuleInstall::removeFetched() const {
    struct stat info {};
    if (!m_fetched.empty() && lstat(m_fetched.str(), &info) == 0 &&
        std::pair(info.st_dev, info.st_ino) == m_fetchedFile)
        InstallRecord(m_place.base).remove(belowBase(normalised(m_fetched)));
}

/// Whether an archive of that name would be where a module is, this one will be or the certificates are: what
/// has not been verified must not cost anybody those, nor be taken for them.
bool ModuleInstall::isDisputed(InstallRecord const& record, String const& archiveName) const {
    String const module = belowBase(m_place.path);
    return record.isOfModule(archiveName) || collide(archiveName, module) ||
           collide(archiveName, module + SignedDll::fileSuffix) || collide(archiveName, certificatesName);
}

/// Where the archive is, or is to go; empty where its name is disputed.
String ModuleInstall::prepare(String const& archiveName) {
    LockedBase base(m_place.base);
    removeLeftovers(base.directory);
    m_fresh = m_place.base + "/" + ModuleDirectory::freshName(freshPurpose);
    File::createDirectory(m_fresh);
    m_inUse = std::make_unique<ModuleDirectory>(m_fresh);
    m_inUse->lock();
    if (isDisputed(base.record, archiveName))
        return String();
    expect(base.record, InstallRecord::archive, archiveName);
    return m_place.base + "/" + archiveName;
}

/// Of processes that were killed: nobody has them locked.
void ModuleInstall::removeLeftovers(ModuleDirectory const& base) const {
    for (String const& name : base.list(freshPurpose)) {
        String const path = m_place.base + "/" + name;
        try {
            if (ModuleDirectory(path).lock(std::chrono::milliseconds(0)))
                File::eraseDirectory(path);
        } catch (EFile const&) {
            // Whatever it is, it is in nobody's way.
        }
    }
}

std::optional<String> ModuleInstall::missing() const {
    if (!m_unpacked || m_place.pattern.empty())
        return m_place.pattern;
    for (String const& name : {m_place.pattern, String(m_place.pattern + SignedDll::fileSuffix)})
        if (!File::exists(unpacked(name)))
            return name;
    return std::nullopt;
}

void ModuleInstall::commit() {
    verify();
    LockedBase base(m_place.base);
    moveIntoPlace(moves(base.record), base.record);
    m_fetched.clear();
}

void ModuleInstall::verify() {
    String const module = unpacked(m_place.pattern);
    ModuleDirectory const directory(File::getFolderName(module));
    String const name = File::getFileName(module);
    readRecord(directory, name + SignedDll::fileSuffix, m_shownPath + SignedDll::fileSuffix, m_record);
    verifyModule(directory, name, m_record, m_shownPath, m_policy, Descriptor());
    verifyManifest(directory, m_record, m_place.kind, m_shownPath);
}

ModuleInstall::Moves ModuleInstall::moves(InstallRecord const& record) const {
    Moves moves;
    String const staged = unpacked(m_place.pattern);
    if (!m_record.manifest && !m_policy.companionsOnlyByManifest())
        addUnlisted(moves, record);
    if (m_record.manifest)
        for (ModuleCompanion const& companion : m_record.manifest->companions)
            moves.push_back({File::getFolderName(staged) + "/" + companion.name, installed(companion.name)});
    moves.push_back({staged, m_place.path});
    moves.push_back({staged + SignedDll::fileSuffix, m_place.path + SignedDll::fileSuffix});
    return moves;
}

/// All that the archive brings: what of it belongs to the module nobody has said, and so it may not take the
/// place of what belongs to another one.
void ModuleInstall::addUnlisted(Moves& moves, InstallRecord const& record) const {
    String const own = group();
    List<String> names;
    File::getRecursiveFilesList(unpacked(""), names);
    for (String const& name : names) {
        bool const isModule = name == m_place.pattern || name == m_place.pattern + SignedDll::fileSuffix;
        if (!isModule && !isTaken(name) && !record.isOfModule(belowBase(installed(name)), &own))
            moves.push_back({unpacked(name), installed(name)});
    }
}

/// Whether a file of that name would stand in the way of the module itself or of what the client keeps there.
bool ModuleInstall::isTaken(String const& name) const {
    String const file = File::getFileName(m_place.path);
    String const first = name.left('/');
    return first == file || first == file + SignedDll::fileSuffix || first == certificatesName ||
           ModuleDirectory::isReserved(name);
}

void ModuleInstall::moveIntoPlace(Moves const& moves, InstallRecord& record) const {
    Strings files;
    unsigned long length = 0;
    for (Move const& move : moves) {
        files.add(belowBase(move.to));
        length += move.to.length();
    }
    if (length > maxNames)
        fail<EFile>("ModuleInstall", "moveIntoPlace", "the names in the archive are too long");
    Strings const before = record.filesOf(InstallRecord::module, group());
    Strings both = files;
    for (String const& file : before)
        both.add(file);
    record.makeRoom(files, true);
    record.set(InstallRecord::module, group(), both);
    record.save();
    REMOVE(m_place.path + SignedDll::fileSuffix);
    std::set<String> const wanted(files.begin(), files.end());
    for (String const& file : before)
        if (!wanted.contains(file))
            record.remove(file);
    for (Move const& move : moves) {
        sync(move.from);
        File::ensureDirectory(File::getFolderName(move.to));
        rmdir(move.to.str()); // one that is empty
        File::move(move.from, move.to);
    }
    record.set(InstallRecord::module, group(), files);
    record.save();
}

/// The name under which the record knows what belongs to the module.
String ModuleInstall::group() const {
    return belowBase(File::getFolderName(m_place.path));
}

String ModuleInstall::installed(String const& name) const {
    return File::getFolderName(m_place.path) + "/" + name;
}

String ModuleInstall::belowBase(String const& path) const {
    return path.range(m_place.base.length()).trimLeft('/');
}

void fetchCertificate(DownloadManager& downloads, DownloadManager::DownloadConfig const& certificate,
                      String const& base, String const& directory) {
    String const path = directory + "/" + certificate.filename;
    if (!staysInDirectory(certificate.filename, "DownloadManager", "downloadFromConfig") ||
        !isFileName(certificate.filename))
        return;
    try {
        LockedBase locked(base);
        expect(locked.record, InstallRecord::certificate, normalised(path.range(base.length() + 1)));
    } catch (EFile const&) {
        return; // the module reports what it misses
    }
    downloads.downloadFromConfig(certificate, directory, maxCertificateSize);
}

} // namespace quillon
