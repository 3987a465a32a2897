// The publisher's tool: signs a module, and verifies a signature as the client does.
#include "base/console.h"
#include "base/file.h"
#include "base/log.h"
#include "openssl/rsa_wrapper.h"
#include "signmodule/commandline.h"
#include "signmodule/companions.h"
#include "tarvikclient/signeddll.h"

#include <cstdio>

namespace {

using namespace quillon;
using namespace quillon::signmodule;

constexpr int exitFailure = 1;

void say(String const& text) {
    std::fprintf(stderr, "tarvik-signmodule: %s\n", text.str());
}

bool fail(String const& reason) {
    say(reason);
    return false;
}

/// The signature file escapes nothing, so what would be markup there is refused here.
bool isPlain(String const& text) {
    return text.findFirstOf("<>&\"'\r\n", 0) == String::npos;
}

ModuleManifest manifestOf(CommandLine const& line) {
    ModuleManifest manifest;
    manifest.kind = line.kind;
    manifest.platform = line.platform;
    for (String const& file : line.companions)
        manifest.companions.push_back(describeCompanion(line.module, file));
    return manifest;
}

/// The client has a bound for the length of a signature file: one that it would not read does not stay.
bool save(SignedDll const& record, String const& path) {
    if (!record.saveToFile(path))
        return fail("cannot write " + path);
    try {
        SignedDll().loadFromFile(path);
    } catch (EBadSignature const&) {
        File::remove(path);
        return fail("too many companions, or too long names, for one signature file");
    }
    say("wrote " + path);
    return true;
}

bool sign(CommandLine const& line) {
    if (!isPlain(line.name) || !isPlain(line.version))
        return fail("name and version may not hold line breaks nor any of < > & \" '");
    tls::RSA key;
    if (!key.loadFromPem(line.key.str(), "", false))
        return fail("cannot load a private key from " + line.key);
    SignedDll record;
    record.name = line.name;
    record.version = line.version;
    record.compute(key, line.module);
    if (!line.kind.empty()) {
        ModuleManifest const manifest = manifestOf(line);
        if (!manifest.leavesPlaceFor(File::getFileName(line.module)))
            return fail("a companion has the name of the module or of its signature");
        record.attach(manifest, key);
    }
    if (record.signature.empty() || (record.manifest && record.signature2.empty()))
        return fail("cannot sign with the key of " + line.key);
    return save(record, line.module + SignedDll::fileSuffix);
}

bool verifyManifest(CommandLine const& line, ModuleManifest const& manifest) {
    say("a " + manifest.kind + " for " + manifest.platform);
    if (!manifest.leavesPlaceFor(File::getFileName(line.module)))
        return fail("a companion has the name of the module or of its signature");
    for (ModuleCompanion const& companion : manifest.companions) {
        if (!verifyCompanion(line.module, companion))
            return fail("companion " + companion.name + " does not verify");
        say("companion " + companion.name + " verifies");
    }
    return true;
}

bool verify(CommandLine const& line) {
    tls::RSA key;
    if (!key.loadFromPem(line.key.str(), "", true))
        return fail("cannot load a public key from " + line.key);
    SignedDll record;
    record.loadFromFile(line.module + SignedDll::fileSuffix);
    if (!record.verify(key, line.module))
        return fail(line.module + " does not verify");
    say(line.module + " verifies: " + record.name + " " + record.version + ", signed " + record.signdate);
    return !record.manifest || verifyManifest(line, *record.manifest);
}

} // namespace

int main(int argc, char** argv) {
    auto const line = parseCommandLine(argc, argv);
    if (!line) {
        std::fputs(usage, stderr);
        return exitFailure;
    }
    // The toolkit's log says why something failed; its lines belong beside the tool's own.
    for (LogCategory const category : {TRACE, DEBUG, ERROR, ASSERT})
        console->setStream(category, "stderr");
    try {
        return (line->command == Command::sign ? sign(*line) : verify(*line)) ? 0 : exitFailure;
    } catch (std::exception const& e) {
        fail(String::copyOf(e.what()));
        return exitFailure;
    }
}
