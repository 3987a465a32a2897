// The reader of a JSON object.
#pragma once

#include "json/JSONPolyReader.h"

#include <map>

namespace quillon::json {

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
