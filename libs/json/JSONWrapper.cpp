#include "json/JSONWrapper.h"

#include "base/log.h"
#include "json/JSONPolyReader.h"
#include "json/JSONWrapperConstIterator.h"

#include <json/value.h>

namespace quillon::json {

namespace {

[[noreturn]] void fail(char const* method, String const& text, int line) {
    log(ERROR, "JSONWrapper", method, text);
    throw EJsonError("EJsonError", "libs/json/JSONWrapper.cpp", line);
}

} // namespace

JSON::Type JSONWrapper::getType() const {
    auto const type = static_cast<int>(m_value->type());
    if (type < JSON::nullValue || type > JSON::objectValue)
        fail("getType", "unknown type: " + toString(type), __LINE__);
    return static_cast<JSON::Type>(type);
}

template <class T>
T JSONWrapper::_as(char const* method, T (Json::Value::*accessor)() const) const {
    try {
        return (m_value->*accessor)();
    } catch (Json::Exception const& e) {
        fail(method, String::copyOf(e.what()), __LINE__);
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
        fail("operator[]", String::copyOf(e.what()), __LINE__);
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
        fail("getMemberNames", String::copyOf(e.what()), __LINE__);
    }
}

JSONPolyReader JSONWrapper::getReader() const {
    return JSONPolyReader(*this);
}

} // namespace quillon::json
