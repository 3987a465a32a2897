#include "tarvikclient/verifiedmodule.h"

#include "base/base64.h"
#include "base/failure.h"
#include "base/file.h"
#include "base/ownfile.h"
#include "openssl/evp_digest_wrapper.h"
#include "tarvikclient/loadpath.h"
#include "tarvikclient/policy.h"
#include "tarvikclient/publisherkeys.h"

#include <fcntl.h>

#include <cerrno>
#include <optional>

namespace quillon {

namespace {

constexpr char copyPurpose[] = "load";
constexpr std::size_t pieceSize = 65536;
/// No module is larger, in bytes; an archive may not be either.
constexpr unsigned long maxModuleSize = 512UL * 1024 * 1024;

[[noreturn]] void failVerifying(String const& path) {
    fail<EBadSignature>("TarvikClient", "verifyDllSignature", "Bad dll signature for " + path,
                        {"apps/tarvikclient/client.cpp", 76});
}

ssize_t readPiece(Descriptor const& file, Memory& piece) {
    ssize_t count;
    piece.resize(pieceSize);
    do
        count = read(file.number(), piece.array(), piece.size());
    while (count < 0 && errno == EINTR);
    piece.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return count;
}

/// SHA-256, in Base64, of the bytes that were read and, where there is a copy, written. None, which is like
/// no hash that a record could hold, when not all of them were.
std::optional<String> hashWhileCopying(Descriptor const& module, Descriptor const& copy) {
    tls::EVPDigest digest("sha256");
    Memory piece;
    unsigned long total = 0;
    ssize_t count;
    while ((count = readPiece(module, piece)) > 0) {
        total += piece.size();
        if (total > maxModuleSize || (copy && !writeAll(copy, {piece.array(), piece.size()}))) {
            log(ERROR, "VerifiedModule", "hashWhileCopying",
                "the module is too large, or its copy for the disk");
            return std::nullopt;
        }
        digest.update(piece);
    }
    if (count < 0)
        return std::nullopt;
    return Base64::encode(digest.final());
}

} // namespace

void readRecord(ModuleDirectory const& directory, String const& name, String const& path, SignedDll& record) {
    Descriptor const file = directory.open(name);
    if (!file)
        SignedDll::failOpening(path);
    String text;
    Memory piece;
    while (readPiece(file, piece) > 0 && text.length() <= SignedDll::maxFileSize)
        text.append(piece);
    record.loadFromText(text);
}

void verifyModule(ModuleDirectory const& directory, String const& name, SignedDll const& record,
                  String const& path, Policy const& policy, Descriptor const& copy) {
    PublisherKeys keys(policy);
    Descriptor const module = directory.open(name);
    auto const hash = module ? hashWhileCopying(module, copy) : std::nullopt;
    // One that could not be made is not looked up: whatever stood for it might be what a record says.
    if (!hash || !record.verifyHash(keys, *hash) || !policy.acceptsModule(record))
        failVerifying(path);
}

VerifiedModule::VerifiedModule(String const& path)
    : m_path(path.replace('\\', '/').owned()), m_directory(File::getFolderName(m_path)) {}

void verifyManifest(ModuleDirectory const& directory, SignedDll const& record, char const* kind,
                    String const& path) {
    if (!record.manifest)
        return;
    if (!record.manifest->suits(kind, File::getFileName(path)))
        failVerifying(path);
    for (ModuleCompanion const& companion : record.manifest->companions) {
        Descriptor const file = directory.open(companion.name);
        if (file && hashWhileCopying(file, Descriptor()) == companion.sha256)
            continue;
        log(ERROR, "FileSignature", "verify", "bad hash of companion " + companion.name);
        failVerifying(path);
    }
}

VerifiedModule::VerifiedModule(String const& path, String const& sigPath, Policy const& policy,
                               char const* kind) try
    : VerifiedModule(path) {
    // What another process that loads here is about to load must stay; what one has left that was killed
    // goes.
    if (m_directory.lock())
        for (String const& left : m_directory.list(copyPurpose))
            m_directory.remove(left);
    readRecord(m_directory, File::getFileName(sigPath), sigPath, m_record);
    m_freshName = ModuleDirectory::freshName(copyPurpose);
    Descriptor const copy = m_directory.create(m_freshName);
    if (!copy)
        failVerifying(m_path);
    verifyModule(m_directory, File::getFileName(m_path), m_record, m_path, policy, copy);
    if (kind)
        verifyManifest(m_directory, m_record, kind, m_path);
    m_loadPath = loadPathOf(m_directory.number(), m_freshName);
} catch (EFile const&) {
    SignedDll::failOpening(sigPath); // there is no directory, or none that is the user's alone
}

void VerifiedModule::settle() noexcept {
    if (m_freshName.empty())
        return;
    m_directory.remove(m_freshName);
    m_freshName.clear();
    m_directory.unlock();
}

} // namespace quillon
