// What a publisher says of a module beyond its bytes.
#pragma once

#include "base/confhelper.h"

#include <vector>

namespace quillon {

class DllInfos;

/// A manifest that is incomplete or says what none may say; the reason has been logged.
class EModuleManifest : public EKeyReader {
    using EKeyReader::EKeyReader;
};

/// A file that a module brings along. Keyed form alone.
class ModuleCompanion : public IConf {
public:
    using IConf::read;
    using IConf::write;
    void write(IKeyReader& reader) override;
    void read(IKeyWriter& writer) const override;

    String name;   ///< its path seen from the module's directory
    String sha256; ///< in Base64
};

/// What a module is for, where it runs and which files belong to it: all that may be installed beside it.
/// Keyed form alone. One thread at a time.
class ModuleManifest : public IConf {
public:
    static constexpr char plugin[] = "plugin";
    static constexpr char hostchecker[] = "hostchecker";
    static constexpr unsigned maxCompanions = 256;
    static constexpr unsigned maxNameLength = 255; ///< of a companion, in bytes

    static bool isKind(String const& text);
    static bool isPlatform(String const& text);

    /// Throws EModuleManifest when a key is missing or repeated, and what check() throws.
    using IConf::write;
    void write(IKeyReader& reader) override;
    using IConf::read;
    void read(IKeyWriter& writer) const override;

    /// Throws EModuleManifest unless the kind and the platform are known, there are no more than
    /// maxCompanions, and each has a digest of 32 bytes in its one spelling and a name that means one file
    /// below the module's directory wherever it is unpacked: printable ASCII without markup or "\", at most
    /// maxNameLength bytes, no component empty or ending in a dot, and no two alike but for case.
    void check() const;

    /// Whether a module of this manifest may be used as `kind` on this platform under the name `fileName`,
    /// for which it has to leave place. Logs why not.
    bool suits(String const& kind, String const& fileName) const;
    /// Whether no companion stands where the module `fileName` or its signature file does, or within either.
    bool leavesPlaceFor(String const& fileName) const;

    /// What the second signature signs: version, name, signdate and sha256 of `module`, kind, platform, the
    /// number of companions, then the name and sha256 of each. Each stands as a netstring, its length in
    /// decimal, ":", its bytes and ","; the number is decimal text too. No two records give the same bytes.
    String signedBytes(DllInfos const& module) const;

    String kind;
    String platform; ///< as modulePlatform() names it
    std::vector<ModuleCompanion> companions;
};

} // namespace quillon
