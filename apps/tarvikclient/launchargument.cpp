#include "tarvikclient/launchargument.h"

#include <algorithm>
#include <cstring>

namespace quillon {

String takeArgument(char* argument) {
    std::size_t const length = std::strlen(argument);
    String copy = String::copyOf({argument, length});
    std::fill_n(argument, length, '\0');
    return copy;
}

} // namespace quillon
