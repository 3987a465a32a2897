// Agreement without a user at hand.
#pragma once

#include "tarvikclient/gatewayconsent.h"

namespace quillon::cli {

/// The answer to a question about a gateway where the user has given it beforehand.
class Consent final : public IGatewayConsent {
public:
    void ask(std::shared_ptr<GatewayQuestion> const& question) override {
        question->answer(GatewayQuestion::Answer::yes);
    }
};

} // namespace quillon::cli
