#include "devgateway/log.h"

#include "devgateway/text.h"

#include <cstdio>

namespace devgateway {

void logLine(std::string_view line) {
    std::string const text = printable(line) + "\n";
    // One call: stdio locks the stream for its length, and stderr is not buffered.
    std::fwrite(text.data(), 1, text.size(), stderr);
}

} // namespace devgateway
