#include "curl/curlinitializer.h"

#include <curl/curl.h>

#include <csignal>

namespace quillon {

CurlInitializer::CurlInitializer() {
    curl_global_init(CURL_GLOBAL_ALL);
    struct sigaction current {};
    if (sigaction(SIGPIPE, nullptr, &current) == 0 && current.sa_handler == SIG_DFL)
        signal(SIGPIPE, SIG_IGN);
}

CurlInitializer::~CurlInitializer() {
    curl_global_cleanup();
}

std::shared_ptr<CurlInitializer> CurlInitializer::instance() {
    static std::shared_ptr<CurlInitializer> const theInstance = std::make_shared<CurlInitializer>();
    return theInstance;
}

} // namespace quillon
