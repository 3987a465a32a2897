// The failure to set libcurl up.
#pragma once

#include "base/exception.h"

namespace quillon {

/// libcurl gave no handle or refused a setting that requests must not go without. A transfer that fails is
/// not reported so.
class ECurl : public Exception {
    using Exception::Exception;
};

} // namespace quillon
