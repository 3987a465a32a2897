// What the gateway answers to which request.
#pragma once

#include "devgateway/hostcheck.h"
#include "devgateway/message.h"
#include "devgateway/modulepackage.h"

#include <chrono>
#include <string>

namespace devgateway {

/// What the gateway serves.
struct GatewayContent {
    std::string authority; // HOST or HOST:PORT of the gateway's own URLs
    ModulePackage plugin;
    ModulePackage hostchecker;
    std::string clientPem; // certificate and key for a client
    std::string caPem;     // the gateway's own certificate
    std::string pollScript;
    unsigned hostcheckRounds = 0;
    std::chrono::seconds hostcheckTimer{0};
};

/// The site. Its content is constant; any thread may call answer(), several at a time.
class Gateway {
public:
    explicit Gateway(GatewayContent content);

    Reply answer(Request const& request);

private:
    Reply answerGet(Request const& request);
    Reply mediation(std::string const& kind, Request const& request);
    Reply hostcheckPost(Request const& request);

    GatewayContent const m_content;
    HostCheck m_hostCheck;
};

} // namespace devgateway
