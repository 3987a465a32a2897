// The key readers of JSON values.
#pragma once

#include "base/keyreaderdefaults.h"
#include "json/JSONWrapper.h"

#include <deque>
#include <map>

namespace quillon::json {

/// A reader asked for what its value does not have: a scalar of an object, an absent member, an element past
/// the end.
class EJsonKeyReader : public EKeyReader {
    using EKeyReader::EKeyReader;
};

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
};

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

/// Has nothing to read.
class JSONNullReader final : public JSONReader {
public:
    explicit JSONNullReader(JSONWrapper const& json);

    char const* getClassName() const override { return "JSONNullReader"; }
};

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

/// Gives the elements in order, one for each operator[], whatever the key: a list is read from an array under
/// any item name. The elements already given are not given again; their readers live as long as this
/// one, as the members' of an object do.
class JSONArrayReader final : public JSONReader {
public:
    explicit JSONArrayReader(JSONWrapper const& json);

    char const* getClassName() const override { return "JSONArrayReader"; }

    using JSONReader::size;
    using JSONReader::operator[];
    /// The number of all elements.
    unsigned size(String const& key) const override;
    /// Throws EJsonKeyReader past the last element.
    IKeyReader& operator[](String const& key) override;

private:
    JSONWrapper m_json;
    JSONWrapperConstIterator m_next;
    JSONWrapperConstIterator m_end;
    std::deque<JSONPolyReader> m_given; // never moved: callers hold references to what is in it
};

/// Gives the members by name. A member that is null counts as absent for exists() and size(). Asked again, a
/// member has the same reader, which goes on where it was.
class JSONObjectReader final : public JSONReader {
public:
    explicit JSONObjectReader(JSONWrapper const& json);

    char const* getClassName() const override { return "JSONObjectReader"; }

    using JSONReader::exists;
    using JSONReader::size;
    using JSONReader::operator[];
    /// 1 or 0.
    unsigned size(String const& key) const override { return exists(key) ? 1 : 0; }
    bool exists(String const& key) const override;
    /// The reader stays valid as long as this one. Throws EJsonKeyReader when there is no such member.
    IKeyReader& operator[](String const& key) override;

private:
    Json::Value const* find(String const& key) const;

    JSONWrapper m_json;
    std::map<String, JSONPolyReader> m_members; // those that were asked for
};

} // namespace quillon::json
