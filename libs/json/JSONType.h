// The types of JSON values.
#pragma once

namespace quillon::json {

/// The value types, numbered as jsoncpp numbers them.
struct JSON {
    enum Type {
        nullValue = 0,
        intValue = 1,
        uintValue = 2,
        realValue = 3,
        stringValue = 4,
        booleanValue = 5,
        arrayValue = 6,
        objectValue = 7
    };
};

} // namespace quillon::json
