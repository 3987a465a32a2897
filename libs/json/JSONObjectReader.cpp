#include "json/JSONObjectReader.h"

#include "base/assertion.h"

#include <json/value.h>

namespace quillon::json {

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
            fail("operator[]", "no member: " + key);
        known = m_members.emplace(key.owned(), JSONPolyReader(JSONWrapper(*member))).first;
    }
    return *known->second;
}

} // namespace quillon::json
