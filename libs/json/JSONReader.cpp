#include "json/JSONReader.h"

#include "base/assertion.h"
#include "base/failure.h"

#include <json/value.h>

namespace quillon::json {

namespace {

std::unique_ptr<JSONReader> makeReader(JSON::Type type, JSONWrapper const& json) {
    switch (type) {
    case JSON::nullValue:
        return std::make_unique<JSONNullReader>(json);
    case JSON::intValue:
    case JSON::uintValue:
    case JSON::realValue:
    case JSON::stringValue:
    case JSON::booleanValue:
        return std::make_unique<JSONValueReader>(json);
    case JSON::arrayValue:
        return std::make_unique<JSONArrayReader>(json);
    case JSON::objectValue:
        return std::make_unique<JSONObjectReader>(json);
    }
    fail<EJsonKeyReader>("JSONPolyReader", "JSONPolyReader", "BUG, missing case for polyreader");
}

} // namespace

void JSONReader::refuse() const {
    fail<EJsonKeyReader>(getClassName(), "read", "the value is of another type");
}

JSONPolyReader::JSONPolyReader(JSONWrapper const& json)
    : m_type(json.getType()), m_reader(makeReader(m_type, json)) {}

// Here, where the readers are: a wrapper has no need to know them.
JSONPolyReader JSONWrapper::getReader() const {
    return JSONPolyReader(*this);
}

JSONNullReader::JSONNullReader(JSONWrapper const& json) {
    QUILLON_ASSERT(json.getType() == JSON::nullValue, "json.getType() == JSON::nullValue");
}

template <class T>
T JSONValueReader::converted(T (JSONWrapper::*conversion)() const) const {
    try {
        return (m_json.*conversion)();
    } catch (EJsonError const&) { // logged by the wrapper
        failQuietly<EKeyReader>();
    }
}

void JSONValueReader::read(String& value) {
    value = converted(&JSONWrapper::asString);
}

void JSONValueReader::read(bool& value) {
    value = converted(&JSONWrapper::asBool);
}

void JSONValueReader::read(int& value) {
    value = converted(&JSONWrapper::asInt);
}

void JSONValueReader::read(unsigned int& value) {
    value = converted(&JSONWrapper::asUInt);
}

void JSONValueReader::read(Memory& value) {
    value = Memory(converted(&JSONWrapper::asString));
}

JSONArrayReader::JSONArrayReader(JSONWrapper const& json)
    : m_json(json), m_next(json.begin()), m_end(json.end()) {
    QUILLON_ASSERT(json.getType() == JSON::arrayValue, "json.getType() == JSON::arrayValue");
}

unsigned JSONArrayReader::size(String const&) const {
    return m_json.get_ref().size();
}

IKeyReader& JSONArrayReader::operator[](String const&) {
    if (m_next == m_end)
        fail<EJsonKeyReader>(getClassName(), "operator[]", "no element left");
    IKeyReader& element = *m_given.emplace_back(*m_next);
    ++m_next;
    return element;
}

JSONObjectReader::JSONObjectReader(JSONWrapper const& json) : m_json(json) {
    QUILLON_ASSERT(json.getType() == JSON::objectValue, "json.getType() == JSON::objectValue");
}

Json::Value const* JSONObjectReader::find(String const& key) const {
    return m_json.get_ref().find(key.begin(), key.end());
}

bool JSONObjectReader::exists(String const& key) const {
    Json::Value const* const member = find(key);
    return member && !member->isNull();
}

IKeyReader& JSONObjectReader::operator[](String const& key) {
    auto known = m_members.find(key);
    if (known == m_members.end()) {
        Json::Value const* const member = find(key);
        if (!member)
            fail<EJsonKeyReader>(getClassName(), "operator[]", "no member: " + key);
        known = m_members.emplace(key.owned(), JSONPolyReader(JSONWrapper(*member))).first;
    }
    return *known->second;
}

} // namespace quillon::json
