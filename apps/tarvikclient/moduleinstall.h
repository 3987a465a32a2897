// The installation of one module.
#pragma once

#include "tarvikclient/downloadManager.h"
#include "tarvikclient/signeddll.h"

#include <sys/types.h>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace quillon {

class InstallRecord;
class ModuleDirectory;
class Policy;

/// Where a module comes from and where it goes.
struct ModulePlace {
    char const* kind; ///< as manifests name it
    String base;      ///< the directory of all modules of the kind, without a "/" behind; archives go here
    String pattern;   ///< the module's name in the archive
    String path;      ///< the installed module's, in `base` or below it; companions go to its directory
};

/// Fetches a module's archive, unpacks it into a fresh directory beside the target, checks the module there
/// and only then moves what it brings into place: what does not verify changes nothing and leaves nothing.
/// The module counts as installed when its signature file is in place, which is the last step; the old one
/// goes first, so that an install that was cut short is done again. One object for one install, on the
/// client thread.
class ModuleInstall {
public:
    /// The policy outlives the object.
    ModuleInstall(ModulePlace const& place, Policy const& policy);
    /// Takes away the fresh directory and, unless the install was completed, an archive that it fetched.
    ~ModuleInstall();
    ModuleInstall(ModuleInstall const&) = delete;
    ModuleInstall& operator=(ModuleInstall const&) = delete;

    /// Whether an earlier install has put files beside the module that the policy does not allow any more.
    bool isOutdated() const;
    /// Fetches the archive, unless it is there with its MD5, and unpacks it; its name is safe. A failure is
    /// logged, and nothing is unpacked or not all. Throws EFile, after a log line, when the directory cannot
    /// be used.
    void fetch(DownloadManager& downloads, DownloadManager::DownloadConfig const& archive);
    /// Which of the module and its signature file the archive lacks, by its name there; none when all that it
    /// holds is unpacked, and both are among that.
    std::optional<String> missing() const;
    /// Checks the module and moves it, its signature file and its companions into place. Throws EBadSignature
    /// when it does not verify and EFile when it is missing or cannot be moved, after log lines.
    void commit();

private:
    struct Move {
        String from;
        String to;
    };
    using Moves = std::vector<Move>;

    String prepare(String const& archiveName);
    bool isDisputed(InstallRecord const& record, String const& archiveName) const;
    void rememberFetched(String const& path);
    void removeFetched() const;
    void removeLeftovers(ModuleDirectory const& base) const;
    void verify();
    Moves moves(InstallRecord const& record) const;
    void addUnlisted(Moves& moves, InstallRecord const& record) const;
    bool isTaken(String const& name) const;
    void moveIntoPlace(Moves const& moves, InstallRecord& record) const;
    String unpacked(String const& name) const { return m_fresh + "/content/" + name; }
    String group() const;
    String installed(String const& name) const;
    String belowBase(String const& path) const;

    ModulePlace const m_place; // each path in one spelling, as the record and the archive have it
    String const m_shownPath;  // the module's, for messages
    Policy const& m_policy;
    String m_fresh;                           // the directory; empty until it is made
    std::unique_ptr<ModuleDirectory> m_inUse; // the same, locked
    String m_fetched;                         // an archive to take away again; empty when there is none
    std::pair<dev_t, ino_t> m_fetchedFile{};  // as it was fetched
    bool m_unpacked = false;
    SignedDll m_record;
};

/// Where organisations' certificates go, below the directory of plug-ins.
constexpr char certificatesName[] = "PKIs";

/// Fetches a certificate into `directory`, below `base`, unless it is there with its MD5. A failure is
/// logged.
void fetchCertificate(DownloadManager& downloads, DownloadManager::DownloadConfig const& certificate,
                      String const& base, String const& directory);

} // namespace quillon
