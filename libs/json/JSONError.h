// What reading JSON can throw.
#pragma once

#include "base/reader.h"

namespace quillon::json {

/// A text that is not JSON, or a value used as if it had another type.
class EJsonError : public Exception {
    using Exception::Exception;
};

/// A reader asked for what its value does not have: a scalar of an object, an absent member, an element past
/// the end.
class EJsonKeyReader : public EKeyReader {
    using EKeyReader::EKeyReader;
};

} // namespace quillon::json
