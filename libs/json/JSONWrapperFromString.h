// A JSON document read from text.
#pragma once

#include "json/JSONWrapper.h"

#include <memory>

namespace quillon::json {

/// The root value of a text, which it owns: JSON (RFC 8259) with comments, any type of value at the root, and
/// whatever stands behind it ignored. Copies share the document. All wrappers and readers made from it, a
/// plain JSONWrapper copied from it among them, need one copy to live.
class JSONWrapperFromString : public JSONWrapper {
public:
    /// Throws EJsonError when `text` is not JSON, is nested more than 1000 levels deep or holds 100,000
    /// commas and opening brackets, wherever they stand.
    explicit JSONWrapperFromString(String const& text);

private:
    explicit JSONWrapperFromString(std::shared_ptr<Json::Value const> root);

    std::shared_ptr<Json::Value const> m_root;
};

} // namespace quillon::json
