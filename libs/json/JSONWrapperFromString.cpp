#include "json/JSONWrapperFromString.h"

#include "base/log.h"

#include <json/reader.h>

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
    log(ERROR, "JSONWrapperFromString", "JSONWrapperFromString", "unable to parse json !");
    throw EJsonError("EJsonError", "libs/json/JSONWrapperFromString.cpp", __LINE__);
}

} // namespace

JSONWrapperFromString::JSONWrapperFromString(String const& text) : JSONWrapperFromString(parse(text)) {}

JSONWrapperFromString::JSONWrapperFromString(std::shared_ptr<Json::Value const> root)
    : JSONWrapper(*root), m_root(std::move(root)) {}

} // namespace quillon::json
