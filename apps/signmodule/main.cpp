// The publisher's tool: signs a module, and verifies a signature as the client does.
#include "base/console.h"
#include "base/file.h"
#include "base/log.h"
#include "openssl/rsa_wrapper.h"
#include "signmodule/commandline.h"
#include "tarvikclient/signeddll.h"

#include <cstdio>

namespace {

using namespace quillon;
using namespace quillon::signmodule;

constexpr int exitFailure = 1;

bool fail(String const& reason) {
    std::fprintf(stderr, "tarvik-signmodule: %s\n", reason.str());
    return false;
}

/// The signature file escapes nothing, so what would be markup there is refused here.
bool isPlain(String const& text) {
    return text.findFirstOf("<>&\"'\r\n", 0) == String::npos;
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
    if (record.signature.empty())
        return fail("cannot sign with the key of " + line.key);
    String const path = line.module + SignedDll::fileSuffix;
    if (!record.saveToFile(path))
        return fail("cannot write " + path);
    std::fprintf(stderr, "tarvik-signmodule: wrote %s\n", path.str());
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
    std::fprintf(stderr, "tarvik-signmodule: %s verifies: %s %s, signed %s\n", line.module.str(),
                 record.name.str(), record.version.str(), record.signdate.str());
    return true;
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
    } catch (Exception const& e) {
        fail(e.toString());
        return exitFailure;
    }
}
