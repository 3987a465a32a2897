// What the gateway asks the client to do.
#pragma once

#include "tarvikclient/downloadManager.h"

#include <cstdint>
#include <memory>

namespace quillon {

class ClientHostcheckerDllConfiguration;
class ClientPluginDllConfiguration;
class NoTunnelClientPluginDllConfiguration;

/// The reply names a kind of configuration that this client does not know.
class EClientConfiguration : public Exception {
    using Exception::Exception;
};

/// Receives the record that a configuration holds, by its kind.
class ClientConfigurationDispatcher {
public:
    virtual void dispatch(ClientHostcheckerDllConfiguration& configuration) = 0;
    virtual void dispatch(ClientPluginDllConfiguration& configuration) = 0;
    virtual void dispatch(NoTunnelClientPluginDllConfiguration& configuration) = 0;

protected:
    ~ClientConfigurationDispatcher() = default;
};

/// A component's module for one platform: a download, and what the archive holds.
struct Dll : DownloadManager::DownloadConfig {
    using IConf::write;
    void write(IKeyReader& reader) override;

    String pattern; ///< the module's name in the archive
    String version; ///< free text; part of a path where versions are kept side by side
};

/// A component's module for each platform; an absent one is empty.
struct Dlls : IConf {
    using IConf::write;
    void write(IKeyReader& reader) override;

    Dll win32;
    Dll win64;
    Dll mac; ///< used on Linux as well
};

/// The files that authenticate the user's tunnel.
struct Certificates : IConf {
    using IConf::write;
    void write(IKeyReader& reader) override;

    DownloadManager::DownloadConfig cert;
    DownloadManager::DownloadConfig ca;
};

/// A configuration record of any kind.
class ClientConfigurationDispatcherElt : public IConf {
public:
    using IConf::read;
    using IConf::write;
    void write(IReader& reader) override { IConf::write(reader); }
    /// Reads the record's keys; throws EConfMissingKey at the first required one that is missing.
    void write(IKeyReader& reader) override = 0;
    void read(IWriter& writer) const override { IConf::read(writer); }
    void read(IKeyWriter& writer) const override { IConf::read(writer); }
    /// Calls the dispatcher's overload for this kind.
    virtual void accept(ClientConfigurationDispatcher& dispatcher) = 0;
};

/// "plugindll": a plug-in with a tunnel.
class ClientPluginDllConfiguration : public ClientConfigurationDispatcherElt {
public:
    using ClientConfigurationDispatcherElt::write;
    void write(IKeyReader& reader) override;
    void accept(ClientConfigurationDispatcher& dispatcher) override { dispatcher.dispatch(*this); }

    String orgname;
    String server;
    String certPassword;
    String login;
    String ticket;
    Certificates certificates;
    Dlls pluginDlls;
    String clientid;
    String sessionid;
};

/// "hostchecker": a check of this machine.
class ClientHostcheckerDllConfiguration : public ClientConfigurationDispatcherElt {
public:
    using ClientConfigurationDispatcherElt::write;
    void write(IKeyReader& reader) override;
    void accept(ClientConfigurationDispatcher& dispatcher) override { dispatcher.dispatch(*this); }

    Dlls hostcheckerDlls;
    String hostcheckingrequest;
    std::uint32_t hostcheckingtimer = 0; ///< seconds between two rounds; 0 stands for 1
    String responseurl;
    String hostname;
    String language;
};

/// "plugindllnotunnel": a plug-in that opens one resource.
class NoTunnelClientPluginDllConfiguration : public ClientConfigurationDispatcherElt {
public:
    using ClientConfigurationDispatcherElt::write;
    void write(IKeyReader& reader) override;
    void accept(ClientConfigurationDispatcher& dispatcher) override { dispatcher.dispatch(*this); }

    String orgname;
    Dlls pluginDlls;
    String clientid;
    String service;
    std::int32_t safetype = 0;
};

/// A record without fields.
struct NoTunnelLauncherConf : ISerialize {
    void write(IReader&) override {}
    void write(IKeyReader&) override {}
    void read(IWriter&) const override {}
    void read(IKeyWriter&) const override {}
};

/// The configuration of a session: a kind and its record.
class ClientConfiguration final : public gc::ObjectDelete {
public:
    char const* getClassName() const noexcept override { return "ClientConfiguration"; }

    /// Reads "type" and the record of that kind from a reply's result. Throws EClientConfiguration for an
    /// unknown type, compared exactly, and EConfMissingKey.
    static gc::Pointer<ClientConfiguration> load(IKeyReader& result);

    String const& getType() const noexcept { return m_type; }
    void accept(ClientConfigurationDispatcher& dispatcher) { m_record->accept(dispatcher); }

private:
    ClientConfiguration(String const& type, std::unique_ptr<ClientConfigurationDispatcherElt> record)
        : m_type(type), m_record(std::move(record)) {}

    String m_type;
    std::unique_ptr<ClientConfigurationDispatcherElt> m_record;
};

} // namespace quillon
