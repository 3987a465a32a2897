// Containers that records hold.
#pragma once

#include "base/array.h"
#include "base/serializeitems.h"

#include <list>

namespace quillon {

/// An Array that documents can hold.
template <class T, class M = NoMutex>
class SerializeArray : public SerializeItems<T, Array<T, M>> {
public:
    using SerializeItems<T, Array<T, M>>::SerializeItems;
};

/// An array of strings that documents can hold.
template <class T>
class Vector;
template <>
class Vector<String> : public SerializeArray<String, NoMutex> {
public:
    using SerializeArray<String, NoMutex>::SerializeArray;
};

namespace detail {
/// The linked list behind List.
template <class T>
class LinkedItems {
public:
    using ConstIterator = typename std::list<T>::const_iterator;

    void add(T const& item) { m_items.push_back(item); }
    void clear() noexcept { m_items.clear(); }
    unsigned size() const noexcept { return static_cast<unsigned>(m_items.size()); }
    bool empty() const noexcept { return m_items.empty(); }
    /// Removes every item equal to `item`; true when there was one.
    bool remove(T const& item) {
        auto const before = m_items.size();
        m_items.remove(T(item)); // a copy: the caller's may be one of the items
        return m_items.size() != before;
    }
    ConstIterator begin() const noexcept { return m_items.begin(); }
    ConstIterator end() const noexcept { return m_items.end(); }

private:
    std::list<T> m_items;
};
} // namespace detail

/// A linked list that documents can hold. One thread at a time.
template <class T>
class List : public SerializeItems<T, detail::LinkedItems<T>> {
public:
    /// `itemName` is the name of the items' elements in a document.
    explicit List(String const& itemName = "item") : SerializeItems<T, detail::LinkedItems<T>>(itemName) {}
};

} // namespace quillon
