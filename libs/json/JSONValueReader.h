// The reader of a JSON number, string or boolean.
#pragma once

#include "json/JSONReader.h"
#include "json/JSONWrapper.h"

namespace quillon::json {

/// Converts as JSONWrapper does. A conversion that fails is an EKeyReader; the types not listed are refused.
class JSONValueReader final : public JSONReader {
public:
    explicit JSONValueReader(JSONWrapper const& json) noexcept : m_json(json) {}

    char const* getClassName() const override { return "JSONValueReader"; }

    using JSONReader::read;
    void read(String& value) override;
    void read(bool& value) override;
    void read(int& value) override;
    void read(unsigned int& value) override;
    /// The bytes of the text.
    void read(Memory& value) override;

private:
    template <class T>
    T converted(T (JSONWrapper::*conversion)() const) const;

    JSONWrapper m_json;
};

} // namespace quillon::json
