// The base of the key readers of JSON values.
#pragma once

#include "base/keyreaderdefaults.h"
#include "json/JSONError.h"

namespace quillon::json {

/// A reader that refuses everything with EJsonKeyReader; each subclass allows what its type of value has. The
/// document must outlive it. One thread.
class JSONReader : public KeyReaderDefaults<EJsonKeyReader> {
public:
    using KeyReaderDefaults::getAttribute;
    using KeyReaderDefaults::hasAttribute;

    /// For logs; static storage.
    virtual char const* getClassName() const = 0;
    // JSON has no attributes.
    virtual bool hasAttribute(String const&) const { return false; }
    virtual String getAttribute(String const&) const { return String(); }

protected:
    [[noreturn]] void refuse() const override;
    /// Logs `text` and throws EJsonKeyReader.
    [[noreturn]] void fail(char const* method, String const& text) const;
};

} // namespace quillon::json
