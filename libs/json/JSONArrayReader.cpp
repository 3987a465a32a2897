#include "json/JSONArrayReader.h"

#include "base/assertion.h"

#include <json/value.h>

namespace quillon::json {

JSONArrayReader::JSONArrayReader(JSONWrapper const& json)
    : m_json(json), m_next(json.begin()), m_end(json.end()) {
    QUILLON_ASSERT(json.getType() == JSON::arrayValue, "json.getType() == JSON::arrayValue");
}

unsigned JSONArrayReader::size(String const&) const {
    return m_json.get_ref().size();
}

IKeyReader& JSONArrayReader::operator[](String const&) {
    if (m_next == m_end)
        fail("operator[]", "no element left");
    IKeyReader& element = *m_given.emplace_back(*m_next);
    ++m_next;
    return element;
}

} // namespace quillon::json
