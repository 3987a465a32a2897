// A JSON document and its values.
#pragma once

#include "base/reader.h"
#include "base/strings.h"

#include <concepts>
#include <iterator>
#include <memory>

namespace Json {
class Value;
class ValueConstIterator;
} // namespace Json

namespace quillon::json {

/// A text that is not JSON, or a value used as if it had another type.
class EJsonError : public Exception {
    using Exception::Exception;
};

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

    /// A reader for this value (JSONReader.h), to be used on one thread; the document must outlive it.
    JSONPolyReader getReader() const;

private:
    JSONWrapper member(String const& key) const;
    template <class T>
    T _as(char const* method, T (Json::Value::*accessor)() const) const;

    Json::Value const* m_value;
};

/// Gives each element or member as a JSONWrapper. Valid as long as the document.
class JSONWrapperConstIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = JSONWrapper;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = JSONWrapper;

    explicit JSONWrapperConstIterator(Json::ValueConstIterator const& position);
    JSONWrapperConstIterator(JSONWrapperConstIterator const& other);
    JSONWrapperConstIterator(JSONWrapperConstIterator&&) noexcept;
    JSONWrapperConstIterator& operator=(JSONWrapperConstIterator other) noexcept;
    ~JSONWrapperConstIterator();

    JSONWrapper operator*() const;
    JSONWrapperConstIterator& operator++();
    JSONWrapperConstIterator operator++(int);
    bool operator==(JSONWrapperConstIterator const& other) const;

    /// The member's name; empty for an element of an array.
    String name() const;

private:
    std::unique_ptr<Json::ValueConstIterator> m_position; // hides jsoncpp's header
};

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
