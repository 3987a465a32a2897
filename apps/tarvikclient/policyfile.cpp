#include "tarvikclient/policyfile.h"

#include "base/visibletext.h"
#include "tarvikclient/trustedfile.h"

namespace quillon {

void failPolicy(String const& path, String const& reason, Place place) {
    fail<EPolicy>("Policy", "load", "The policy " + path + " allows no session: " + reason, place);
}

std::optional<String> readPolicyFile(PolicyPlace const& place) {
    try {
        auto text = readTrustedFile(place.path, place.owner);
        String const inOneLine = text ? text->remove('\n').remove('\r') : String();
        if (visibleText(inOneLine) != inOneLine) // which an editor would not show
            failPolicy(place.path, "it holds control characters");
        return text;
    } catch (EUntrustedFile const& e) {
        failPolicy(place.path, e.reason());
    }
}

} // namespace quillon
