// The reader of a JSON value of any type.
#pragma once

#include "json/JSONReader.h"
#include "json/JSONType.h"
#include "json/JSONWrapper.h"

#include <memory>

namespace quillon::json {

/// Owns the one reader that suits the value's type. Readers of what is below are made when they are asked
/// for.
class JSONPolyReader {
public:
    /// Throws EJsonKeyReader when there is no reader for the value.
    explicit JSONPolyReader(JSONWrapper const& json);

    JSON::Type getType() const noexcept { return m_type; }
    IKeyReader& operator*() const noexcept { return *m_reader; }
    IKeyReader* operator->() const noexcept { return m_reader.get(); }

private:
    JSON::Type m_type;
    std::unique_ptr<JSONReader> m_reader;
};

} // namespace quillon::json
