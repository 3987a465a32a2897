// Mediation replies, down to the records of each kind of configuration.
#include "fuzz/fuzzer.h"
#include "tarvikclient/clientconfiguration.h"
#include "tarvikclient/mediationresponse.h"

using namespace quillon;

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    try {
        MediationResponse const response(fuzz::inputOf(data, size));
        if (response.isSuccess())
            ClientConfiguration::load(*response.resultReader());
    } catch (Exception const&) {
    }
    return 0;
}
