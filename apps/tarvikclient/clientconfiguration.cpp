#include "tarvikclient/clientconfiguration.h"

#include "base/confhelper.h"
#include "base/failure.h"

namespace quillon {

namespace {

template <class T>
void require(IKeyReader& reader, char const* key, T& value) {
    ConfReadHelper::readKey(reader, key, value, ConfReadHelper::required);
}

template <class T>
void accept(IKeyReader& reader, char const* key, T& value) {
    ConfReadHelper::readKey(reader, key, value, ConfReadHelper::optional);
}

std::unique_ptr<ClientConfigurationDispatcherElt> makeRecord(String const& type) {
    if (type == "plugindll")
        return std::make_unique<ClientPluginDllConfiguration>();
    if (type == "plugindllnotunnel")
        return std::make_unique<NoTunnelClientPluginDllConfiguration>();
    if (type == "hostchecker")
        return std::make_unique<ClientHostcheckerDllConfiguration>();
    fail<EClientConfiguration>("ClientConfiguration", "load", "Unknown configuration type: " + type,
                               {"apps/tarvikclient/clientconfiguration.cpp", 93});
}

} // namespace

void Dll::write(IKeyReader& reader) {
    DownloadConfig::write(reader);
    require(reader, "pattern", pattern);
    require(reader, "version", version);
}

void Dlls::write(IKeyReader& reader) {
    accept(reader, "win32", win32);
    accept(reader, "win64", win64);
    accept(reader, "mac", mac);
}

void Certificates::write(IKeyReader& reader) {
    require(reader, "cert", cert);
    require(reader, "ca", ca);
}

void ClientPluginDllConfiguration::write(IKeyReader& reader) {
    require(reader, "orgname", orgname);
    require(reader, "server", server);
    require(reader, "certPassword", certPassword);
    require(reader, "login", login);
    require(reader, "ticket", ticket);
    require(reader, "sessionid", sessionid);
    require(reader, "pluginDlls", pluginDlls);
    require(reader, "certificates", certificates);
    require(reader, "clientid", clientid);
}

void ClientHostcheckerDllConfiguration::write(IKeyReader& reader) {
    require(reader, "hostcheckerDlls", hostcheckerDlls);
    require(reader, "hostcheckingrequest", hostcheckingrequest);
    require(reader, "responseurl", responseurl);
    require(reader, "hostname", hostname);
    require(reader, "language", language);
    require(reader, "hostcheckingtimer", hostcheckingtimer);
}

void NoTunnelClientPluginDllConfiguration::write(IKeyReader& reader) {
    require(reader, "orgname", orgname);
    require(reader, "pluginDlls", pluginDlls);
    require(reader, "service", service);
    require(reader, "clientid", clientid);
    require(reader, "safetype", safetype);
}

gc::Pointer<ClientConfiguration> ClientConfiguration::load(IKeyReader& result) {
    String type;
    require(result, "type", type);
    auto record = makeRecord(type);
    record->write(result);
    return new ClientConfiguration(type, std::move(record));
}

} // namespace quillon
