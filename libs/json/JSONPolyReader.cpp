#include "json/JSONPolyReader.h"

#include "base/log.h"
#include "json/JSONArrayReader.h"
#include "json/JSONNullReader.h"
#include "json/JSONObjectReader.h"
#include "json/JSONValueReader.h"

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
    log(ERROR, "JSONPolyReader", "JSONPolyReader", "BUG, missing case for polyreader");
    throw EJsonKeyReader("EJsonKeyReader", "libs/json/JSONPolyReader.cpp", __LINE__);
}

} // namespace

JSONPolyReader::JSONPolyReader(JSONWrapper const& json)
    : m_type(json.getType()), m_reader(makeReader(m_type, json)) {}

} // namespace quillon::json
