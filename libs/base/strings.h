// A list of strings.
#pragma once

#include "base/array.h"
#include "base/string.h"

namespace quillon {

/// The strings of a split, a join or a listing, in order. A value; one thread at a time.
class Strings {
public:
    using ConstIterator = Array<String, NoMutex>::ConstIterator;

    Strings() = default;
    Strings(std::initializer_list<String> items) : m_items(items) {}

    void add(String const& item) { m_items.add(item); }
    unsigned size() const noexcept { return m_items.size(); }
    bool empty() const noexcept { return m_items.size() == 0; }
    void clear() { m_items.clear(); }
    String const& operator[](unsigned index) const { return m_items[index]; }
    ConstIterator begin() const { return m_items.begin(); }
    ConstIterator end() const { return m_items.end(); }

private:
    Array<String, NoMutex> m_items;
};

} // namespace quillon
