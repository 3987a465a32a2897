// The reader of a JSON null.
#pragma once

#include "base/assertion.h"
#include "json/JSONReader.h"
#include "json/JSONWrapper.h"

namespace quillon::json {

/// Has nothing to read.
class JSONNullReader final : public JSONReader {
public:
    explicit JSONNullReader(JSONWrapper const& json) {
        QUILLON_ASSERT(json.getType() == JSON::nullValue, "json.getType() == JSON::nullValue");
    }

    char const* getClassName() const override { return "JSONNullReader"; }
};

} // namespace quillon::json
