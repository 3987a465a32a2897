// An array that keeps its items in order.
#pragma once

#include <algorithm>
#include <vector>

namespace quillon {

/// Items in the order of operator<; equal items in the order in which they were added. Finding is
/// logarithmic, adding moves what comes behind: for tables, not for input of unknown size. One thread at a
/// time.
template <class T>
class SortedArray {
public:
    using Iterator = typename std::vector<T>::iterator;
    using ConstIterator = typename std::vector<T>::const_iterator;

    /// Adds `item` and returns where it stands.
    Iterator add(T const& item) {
        return m_items.insert(std::upper_bound(m_items.begin(), m_items.end(), item), item);
    }
    /// The first item that is not less than `key`, which need only be comparable with T.
    template <class Key>
    Iterator lowerBound(Key const& key) {
        return std::lower_bound(m_items.begin(), m_items.end(), key);
    }
    template <class Key>
    ConstIterator lowerBound(Key const& key) const {
        return std::lower_bound(m_items.begin(), m_items.end(), key);
    }
    void erase(Iterator item) { m_items.erase(item); }
    void clear() noexcept { m_items.clear(); }
    unsigned size() const noexcept { return static_cast<unsigned>(m_items.size()); }
    T const& operator[](unsigned index) const { return m_items[index]; }

    Iterator begin() noexcept { return m_items.begin(); }
    Iterator end() noexcept { return m_items.end(); }
    ConstIterator begin() const noexcept { return m_items.begin(); }
    ConstIterator end() const noexcept { return m_items.end(); }

private:
    std::vector<T> m_items;
};

} // namespace quillon
