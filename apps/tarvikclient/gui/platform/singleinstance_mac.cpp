// The system's launch services start one process per application and bring every URL to it.
#include "tarvikclient/gui/platform/singleinstance.h"

namespace quillon {

class SingleInstance::Endpoint {};

SingleInstance::SingleInstance() = default;

SingleInstance::~SingleInstance() = default;

SingleInstance::Role SingleInstance::claim(String const&, std::chrono::milliseconds) {
    return Role::first;
}

void SingleInstance::listen(UrlHandler) {}

void SingleInstance::receive(UrlHandler const&, std::chrono::milliseconds) {}

} // namespace quillon
