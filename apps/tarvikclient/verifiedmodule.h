// A module that may be loaded.
#pragma once

#include "tarvikclient/moduledirectory.h"
#include "tarvikclient/signeddll.h"

namespace quillon {

class Policy;

/// A module whose bytes were read once, checked against the publisher's record, and written to a fresh file
/// beside the module that nothing else writes: what is verified is what is loaded, whatever becomes of the
/// installed file. The fresh file stands in the module's own directory, so that a module finds its companions
/// by $ORIGIN and its directory by dladdr(). Client thread.
class VerifiedModule {
public:
    /// Throws EBadSignature, after a log line, when the module or the record at `sigPath`, in the same
    /// directory, is not as it should be, or the record's manifest, where it has one, is not for a module of
    /// the `kind` or for a companion as it is, or the policy refuses it. A null `kind` leaves the manifest
    /// alone.
    VerifiedModule(String const& path, String const& sigPath, Policy const& policy,
                   char const* kind = nullptr);
    VerifiedModule(VerifiedModule const&) = delete;
    VerifiedModule& operator=(VerifiedModule const&) = delete;
    /// Takes the fresh file away.
    ~VerifiedModule() { settle(); }

    /// Where the module is installed; for messages.
    String const& getPath() const noexcept { return m_path; }
    /// What dlopen() is to be given; valid as long as the object, also for what the module loads itself.
    String const& getLoadPath() const noexcept { return m_loadPath; }
    DllInfos const& getRecord() const noexcept { return m_record; }
    /// To be called once the module is loaded, or cannot be: its file is not needed any more.
    void settle() noexcept;

private:
    explicit VerifiedModule(String const& path);

    String const m_path;
    ModuleDirectory m_directory;
    SignedDll m_record;
    String m_freshName; // empty once settled
    String m_loadPath;
};

/// Checks the module `name` in `directory` against `record`, which has been read, with those of the
/// publisher's keys that the policy does not refuse, and asks the policy about the record. What has been read
/// of the module is written to `copy`, where that is a file. Throws EBadSignature, after log lines that name
/// the module as `path`.
void verifyModule(ModuleDirectory const& directory, String const& name, SignedDll const& record,
                  String const& path, Policy const& policy, Descriptor const& copy);

/// Checks what the manifest of a verified record says, if it has one: that the module is of the `kind` and
/// for this platform, and that its companions are in `directory` as they should be. Throws as verifyModule().
void verifyManifest(ModuleDirectory const& directory, SignedDll const& record, char const* kind,
                    String const& path);

/// Reads the record `name` in `directory`. Throws EBadSignature, after a log line that names it as `path`.
void readRecord(ModuleDirectory const& directory, String const& name, String const& path, SignedDll& record);

} // namespace quillon
