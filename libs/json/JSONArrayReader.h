// The reader of a JSON array.
#pragma once

#include "json/JSONPolyReader.h"
#include "json/JSONWrapperConstIterator.h"

#include <deque>

namespace quillon::json {

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

} // namespace quillon::json
