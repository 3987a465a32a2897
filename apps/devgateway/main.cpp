// tarvik-devgateway: an HTTPS gateway for one machine.

#include "devgateway/certificate.h"
#include "devgateway/executablepath.h"
#include "devgateway/gateway.h"
#include "devgateway/options.h"
#include "devgateway/portal.h"
#include "devgateway/replies.h"
#include "devgateway/server.h"
#include "devgateway/termination.h"
#include "devgateway/text.h"

#include <samples/plugin/pollscript.h>

#include <exception>
#include <iostream>

namespace devgateway {

namespace {

constexpr int exitFailure = 1;
constexpr int exitUsage = 64;

std::string authorityOf(Options const& options, int port) {
    if (!options.publicName.empty())
        return options.publicName;
    bool const isIpv6 = options.host.find(':') != std::string::npos;
    return (isIpv6 ? "[" + options.host + "]" : options.host) + ":" + std::to_string(port);
}

ModulePackage package(Options const& options, std::string const& module, char const* archiveName) {
    std::string const path = std::string(modulesPath) + archiveName;
    return packModule(module, findFault(options.faults, FaultKind::BadSignature, path) != nullptr);
}

GatewayContent contentFor(Options const& options, Certificate const& certificate) {
    Certificate const client = Certificate::forClient("alice");
    GatewayContent content;
    content.plugin = package(options, options.plugin, pluginArchiveName);
    content.hostchecker = package(options, options.hostchecker, hostcheckerArchiveName);
    content.clientPem = client.certificatePem() + client.keyPem(clientKeyPassword);
    content.caPem = certificate.certificatePem();
    content.pollScript = options.pollScriptFile.empty() ? samplePollScript : readFile(options.pollScriptFile);
    content.hostcheckRounds = options.hostcheckRounds;
    content.hostcheckTimer = options.hostcheckTimer;
    return content;
}

void printUrls(std::string const& authority) {
    std::cout << "portal https://" << authority << "/\n";
    for (LaunchUrl const& launch : launchUrls(authority))
        std::cout << launch.kind << " " << launch.url << "\n";
    std::cout.flush();
}

void serve(Options const& options) {
    Certificate const certificate = Certificate::forServer();
    GatewayContent content = contentFor(options, certificate);
    if (!options.certificateFile.empty())
        writeFile(options.certificateFile, certificate.certificatePem());
    Server server(certificate, options.host, options.port);
    content.authority = authorityOf(options, server.port());
    printUrls(content.authority);

    Gateway gateway(std::move(content));
    server.run([&](Request const& request) { return gateway.answer(request); }, options.delay,
               options.faults);
}

std::string defaultModuleDirectory() {
    return (executablePath().parent_path().parent_path() / "modules").string();
}

int run(int argc, char** argv) {
    Options const options = parseOptions(argc, argv, defaultModuleDirectory());
    if (options.help)
        std::cout << usage() << std::flush;
    else
        serve(options);
    return 0;
}

} // namespace

} // namespace devgateway

int main(int argc, char** argv) {
    devgateway::holdTerminationSignals();
    try {
        return devgateway::run(argc, argv);
    } catch (devgateway::UsageError const& error) {
        std::cerr << "tarvik-devgateway: " << error.what() << "\n" << devgateway::usage();
        return devgateway::exitUsage;
    } catch (std::exception const& error) {
        std::cerr << "tarvik-devgateway: " << error.what() << "\n";
        return devgateway::exitFailure;
    }
}
