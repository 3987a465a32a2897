// A dictionary over a sorted array.
#pragma once

#include "base/sortedarray.h"

namespace quillon {

/// One entry of a Dict, ordered by its key.
template <class K, class V>
struct DictItem {
    K key;
    V value;

    bool operator<(DictItem const& other) const { return key < other.key; }
    bool operator<(K const& other) const { return key < other; }
};

/// One value for each key. One thread at a time.
template <class K, class V>
class Dict {
public:
    using Iterator = typename SortedArray<DictItem<K, V>>::Iterator;
    using ConstIterator = typename SortedArray<DictItem<K, V>>::ConstIterator;

    /// The entry of `key`, or end().
    Iterator find(K const& key) { return exactly(m_items.lowerBound(key), m_items.end(), key); }
    ConstIterator find(K const& key) const { return exactly(m_items.lowerBound(key), m_items.end(), key); }

    /// Adds an entry or replaces its value.
    void set(K const& key, V const& value) {
        auto const found = find(key);
        if (found == m_items.end())
            m_items.add(DictItem<K, V>{key, value});
        else
            found->value = value;
    }
    /// True when there was an entry.
    bool remove(K const& key) {
        auto const found = find(key);
        if (found == m_items.end())
            return false;
        m_items.erase(found);
        return true;
    }
    void clear() noexcept { m_items.clear(); }
    unsigned size() const noexcept { return m_items.size(); }

    Iterator begin() noexcept { return m_items.begin(); }
    Iterator end() noexcept { return m_items.end(); }
    ConstIterator begin() const noexcept { return m_items.begin(); }
    ConstIterator end() const noexcept { return m_items.end(); }

private:
    template <class It>
    static It exactly(It found, It end, K const& key) {
        return found != end && !(key < found->key) ? found : end;
    }

    SortedArray<DictItem<K, V>> m_items;
};

} // namespace quillon
