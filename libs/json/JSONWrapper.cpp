#include "json/JSONWrapper.h"

#include "base/failure.h"
#include "base/stringconversion.h"
#include "base/strings.h"

#include <json/reader.h>
#include <json/value.h>

#include <algorithm>

namespace quillon::json {

namespace {

std::unique_ptr<Json::CharReader> makeParser() {
    Json::CharReaderBuilder builder;
    builder["allowTrailingCommas"] = false;
    builder["skipBom"] = false;
    // Comments are allowed but not kept: nobody reads them, and placing each costs jsoncpp a search through
    // the white space since the last value, hours for a text made to have much of both.
    builder["collectComments"] = false;
    return std::unique_ptr<Json::CharReader>(builder.newCharReader());
}

// Before each value but the first stands one of these. A value costs some hundred bytes, with its reader, for
// as few as two of text.
bool hasBearablyManyValues(String const& text) {
    constexpr long maxValues = 100'000;
    return std::count_if(text.begin(), text.end(), [](char c) { return c == ',' || c == '[' || c == '{'; }) <=
           maxValues;
}

bool parseInto(Json::Value& root, String const& text) {
    try {
        // Without a place for messages none are composed: each would count lines from the text's start.
        return makeParser()->parse(text.begin(), text.end(), &root, nullptr);
    } catch (Json::Exception const&) { // nested too deep
        return false;
    }
}

std::shared_ptr<Json::Value const> parse(String const& text) {
    auto const root = std::make_shared<Json::Value>();
    if (hasBearablyManyValues(text) && parseInto(*root, text))
        return root;
    fail<EJsonError>("JSONWrapperFromString", "JSONWrapperFromString", "unable to parse json !");
}

} // namespace

JSON::Type JSONWrapper::getType() const {
    auto const type = static_cast<int>(m_value->type());
    if (type < JSON::nullValue || type > JSON::objectValue)
        fail<EJsonError>("JSONWrapper", "getType", "unknown type: " + toString(type));
    return static_cast<JSON::Type>(type);
}

template <class T>
T JSONWrapper::_as(char const* method, T (Json::Value::*accessor)() const) const {
    try {
        return (m_value->*accessor)();
    } catch (Json::Exception const& e) {
        fail<EJsonError>("JSONWrapper", method, String::copyOf(e.what()));
    }
}

String JSONWrapper::asString() const {
    Json::String const text = _as<Json::String>("asString", &Json::Value::asString);
    return String::copyOf(text);
}

bool JSONWrapper::asBool() const {
    return _as<bool>("asBool", &Json::Value::asBool);
}

int JSONWrapper::asInt() const {
    return _as<Json::Int>("asInt", &Json::Value::asInt);
}

unsigned int JSONWrapper::asUInt() const {
    return _as<Json::UInt>("asUInt", &Json::Value::asUInt);
}

JSONWrapper JSONWrapper::member(String const& key) const {
    try {
        Json::Value const* const found = m_value->find(key.begin(), key.end());
        return JSONWrapper(found ? *found : Json::Value::nullSingleton());
    } catch (Json::Exception const& e) {
        fail<EJsonError>("JSONWrapper", "operator[]", String::copyOf(e.what()));
    }
}

JSONWrapperConstIterator JSONWrapper::begin() const {
    return JSONWrapperConstIterator(m_value->begin());
}

JSONWrapperConstIterator JSONWrapper::end() const {
    return JSONWrapperConstIterator(m_value->end());
}

Strings JSONWrapper::getMemberNames() const {
    try {
        Strings names;
        for (Json::String const& name : m_value->getMemberNames())
            names.add(String::copyOf(name));
        return names;
    } catch (Json::Exception const& e) {
        fail<EJsonError>("JSONWrapper", "getMemberNames", String::copyOf(e.what()));
    }
}

JSONWrapperConstIterator::JSONWrapperConstIterator(Json::ValueConstIterator const& position)
    : m_position(std::make_unique<Json::ValueConstIterator>(position)) {}

JSONWrapperConstIterator::JSONWrapperConstIterator(JSONWrapperConstIterator const& other)
    : JSONWrapperConstIterator(*other.m_position) {}

JSONWrapperConstIterator::JSONWrapperConstIterator(JSONWrapperConstIterator&&) noexcept = default;

JSONWrapperConstIterator& JSONWrapperConstIterator::operator=(JSONWrapperConstIterator other) noexcept {
    m_position.swap(other.m_position);
    return *this;
}

JSONWrapperConstIterator::~JSONWrapperConstIterator() = default;

JSONWrapper JSONWrapperConstIterator::operator*() const {
    return JSONWrapper(**m_position);
}

JSONWrapperConstIterator& JSONWrapperConstIterator::operator++() {
    ++*m_position;
    return *this;
}

JSONWrapperConstIterator JSONWrapperConstIterator::operator++(int) {
    JSONWrapperConstIterator before(*this);
    ++*this;
    return before;
}

bool JSONWrapperConstIterator::operator==(JSONWrapperConstIterator const& other) const {
    return *m_position == *other.m_position;
}

String JSONWrapperConstIterator::name() const {
    return String::copyOf(m_position->name());
}

JSONWrapperFromString::JSONWrapperFromString(String const& text) : JSONWrapperFromString(parse(text)) {}

JSONWrapperFromString::JSONWrapperFromString(std::shared_ptr<Json::Value const> root)
    : JSONWrapper(*root), m_root(std::move(root)) {}

} // namespace quillon::json
