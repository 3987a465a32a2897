// A handle on one value of a JSON document.
#pragma once

#include "json/JSONError.h"
#include "json/JSONType.h"

#include <concepts>

namespace Json {
class Value;
}

namespace quillon::json {

class JSONPolyReader;
class JSONWrapperConstIterator;

/// Refers to a value that belongs to a document, which must outlive the handle; copying it copies no value.
/// What the value cannot give is an EJsonError, after a log line; the conversions are jsoncpp's: a number is
/// text, too, but text is no number. Reading one document on several threads is safe.
class JSONWrapper {
public:
    explicit JSONWrapper(Json::Value const& value) noexcept : m_value(&value) {}

    Json::Value const& get_ref() const noexcept { return *m_value; }
    /// Throws EJsonError when the value has none of the types.
    JSON::Type getType() const;

    /// The bytes of a string, UTF-8 with escapes decoded, may hold NULs.
    String asString() const;
    bool asBool() const;
    int asInt() const;
    unsigned int asUInt() const;

    /// The member named `key` of an object; a null value when the object, or null, has none. Throws
    /// EJsonError for a value of another type.
    template <std::convertible_to<String> Key>
    JSONWrapper operator[](Key const& key) const {
        return member(key);
    }
    /// The elements of an array or the members of an object, in the order of their names; nothing of a
    /// scalar.
    JSONWrapperConstIterator begin() const;
    JSONWrapperConstIterator end() const;
    /// Of an object, in order; empty for null. Throws EJsonError for a value of another type.
    Strings getMemberNames() const;

    /// A reader for this value, to be used on one thread; the document must outlive it.
    JSONPolyReader getReader() const;

private:
    JSONWrapper member(String const& key) const;
    template <class T>
    T _as(char const* method, T (Json::Value::*accessor)() const) const;

    Json::Value const* m_value;
};

} // namespace quillon::json
