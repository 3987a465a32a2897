#include "devgateway/replies.h"

#include "devgateway/ziparchive.h"

#include <json/value.h>
#include <json/writer.h>

namespace devgateway {

namespace {

// The rules of the sample host checker's language. The blank and the "&" in the names show that an answer has
// to be encoded; "never" is not met by any machine.
constexpr char hostcheckingRequest[] =
    "linux=os:Linux; mac=os:Darwin; home & shell=env:HOME; hosts=file:/etc/hosts; "
    "temporary=dir:/tmp; clean=!file:/core; never=os:None";

Reply json(Json::Value const& document) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "  ";
    return {200, "application/json", Json::writeString(builder, document) + "\n"};
}

Reply success(Json::Value const& result) {
    Json::Value envelope;
    envelope["success"] = true;
    envelope["code"] = 0;
    envelope["result"] = result;
    return json(envelope);
}

Json::Value download(std::string const& name, std::string const& md5, std::string const& urlPath) {
    Json::Value record;
    record["filename"] = name;
    record["md5"] = md5;
    record["urlpath"] = urlPath;
    return record;
}

Json::Value modules(std::string const& archiveName, ModulePackage const& package,
                    std::string const& urlPath) {
    Json::Value record = download(archiveName, package.md5, urlPath);
    record["pattern"] = package.pattern;
    record["version"] = "1.0";
    Json::Value platforms;
    platforms["mac"] = record; // the key that the client reads on every system
    return platforms;
}

} // namespace

Reply refusal(Refusal code, std::string const& exception) {
    Json::Value envelope;
    envelope["success"] = false;
    envelope["code"] = static_cast<int>(code);
    envelope["exception"] = exception;
    return json(envelope);
}

Reply pluginConfiguration(ModulePackage const& plugin, std::string const& clientPem,
                          std::string const& caPem) {
    Json::Value certificates;
    certificates["cert"] = download(clientCertificateName, md5Hex(clientPem), certificatesPath);
    certificates["ca"] = download(authorityCertificateName, md5Hex(caPem), certificatesPath);
    Json::Value result;
    result["type"] = "plugindll";
    result["orgname"] = "demo";
    result["server"] = "10.8.0.1";
    result["certPassword"] = clientKeyPassword;
    result["login"] = "alice";
    result["ticket"] = "demo-plugin-ticket";
    result["sessionid"] = "demo-session";
    result["pluginDlls"] = modules(pluginArchiveName, plugin, modulesPath);
    result["certificates"] = certificates;
    result["clientid"] = "demo-client";
    return success(result);
}

Reply noTunnelConfiguration(ModulePackage const& plugin) {
    Json::Value result;
    result["type"] = "plugindllnotunnel";
    result["orgname"] = "demo";
    result["pluginDlls"] = modules(pluginArchiveName, plugin, modulesPath);
    result["service"] = "demo-service";
    result["clientid"] = "demo-client";
    result["safetype"] = 3;
    return success(result);
}

Reply hostcheckerConfiguration(ModulePackage const& hostchecker, std::string const& authority,
                               std::string const& language, std::chrono::seconds timer) {
    std::string const root = "https://" + authority;
    Json::Value result;
    result["type"] = "hostchecker";
    result["hostcheckerDlls"] = modules(hostcheckerArchiveName, hostchecker, root + modulesPath);
    result["hostcheckingrequest"] = hostcheckingRequest;
    result["responseurl"] = root + hostcheckPath;
    result["hostname"] = authority;
    result["language"] = language;
    result["hostcheckingtimer"] = static_cast<Json::UInt>(timer.count());
    return success(result);
}

Reply hostcheckAnswer(HostCheck::Round const& round) {
    Json::Value result;
    result["continue"] = !round.isLast();
    result["info"] = describe(round);
    return success(result);
}

} // namespace devgateway
