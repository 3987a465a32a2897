// The JSON documents that the gateway answers with. Every function is pure; any thread may call it.
#pragma once

#include "devgateway/hostcheck.h"
#include "devgateway/message.h"
#include "devgateway/modulepackage.h"

#include <chrono>
#include <string>

namespace devgateway {

/// Where things lie on the gateway.
inline constexpr char modulesPath[] = "/modules/";
inline constexpr char pluginArchiveName[] = "plugin.zip";
inline constexpr char hostcheckerArchiveName[] = "hostchecker.zip";
inline constexpr char certificatesPath[] = "/certificates/";
inline constexpr char clientCertificateName[] = "client.pem";
inline constexpr char authorityCertificateName[] = "ca.pem";
inline constexpr char hostcheckPath[] = "/hostcheck";

/// The password of the key in the client's certificate file.
inline constexpr char clientKeyPassword[] = "demo-password";

/// "code" of a refusal. The client only logs it.
enum class Refusal { NoClientVersion = 1, NoTicket = 2, NoRules = 3, Refused = 7 };

/// A reply whose "success" is false.
Reply refusal(Refusal code, std::string const& exception);

/// The configuration "plugindll". The archive is named by its path on the gateway.
Reply pluginConfiguration(ModulePackage const& plugin, std::string const& clientPem,
                          std::string const& caPem);

/// The configuration "plugindllnotunnel".
Reply noTunnelConfiguration(ModulePackage const& plugin);

/// The configuration "hostchecker". The archive is named by an absolute URL, the other form there is.
Reply hostcheckerConfiguration(ModulePackage const& hostchecker, std::string const& authority,
                               std::string const& language, std::chrono::seconds timer);

/// The answer to the post of one round.
Reply hostcheckAnswer(HostCheck::Round const& round);

} // namespace devgateway
