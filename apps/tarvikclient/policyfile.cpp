#include "tarvikclient/policyfile.h"

#include "base/log.h"
#include "tarvikclient/trustedfile.h"

namespace quillon {

void failPolicy(String const& path, String const& reason, int line) {
    log(ERROR, "Policy", "load", "The policy " + path + " allows no session: " + reason);
    throw EPolicy("EPolicy", "apps/tarvikclient/policyfile.cpp", line);
}

std::optional<String> readPolicyFile(PolicyPlace const& place) {
    try {
        return readTrustedFile(place.path, place.owner);
    } catch (EUntrustedFile const& e) {
        failPolicy(place.path, e.reason(), __LINE__);
    }
}

} // namespace quillon
