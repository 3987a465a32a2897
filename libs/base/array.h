// A growable array with a lock of the caller's choice.
#pragma once

#include "base/mutex.h"

#include <initializer_list>
#include <vector>

namespace quillon {

/// Items in the order in which they were added. M guards each single operation: NoMutex for an array of one
/// thread, InternalMutex for one that several threads add to. Iterators and references are not guarded: they
/// are for times when nobody adds.
template <class T, class M = NoMutex>
class Array {
public:
    using Iterator = typename std::vector<T>::iterator;
    using ConstIterator = typename std::vector<T>::const_iterator;

    Array() = default;
    Array(std::initializer_list<T> items) : m_items(items) {}
    Array(Array const& other) : m_items(other.copyOfItems()) {}
    Array& operator=(Array const& other) {
        std::vector<T> items = other.copyOfItems();
        TSynchronize<M> lock(m_mutex);
        m_items.swap(items);
        return *this;
    }

    void add(T const& item) {
        TSynchronize<M> lock(m_mutex);
        m_items.push_back(item);
    }
    unsigned size() const {
        TSynchronize<M> lock(m_mutex);
        return static_cast<unsigned>(m_items.size());
    }
    void clear() {
        TSynchronize<M> lock(m_mutex);
        m_items.clear();
    }

    /// `index` must be below size().
    T& operator[](unsigned index) {
        TSynchronize<M> lock(m_mutex);
        return m_items[index];
    }
    T const& operator[](unsigned index) const {
        TSynchronize<M> lock(m_mutex);
        return m_items[index];
    }

    Iterator begin() noexcept { return m_items.begin(); }
    Iterator end() noexcept { return m_items.end(); }
    ConstIterator begin() const noexcept { return m_items.begin(); }
    ConstIterator end() const noexcept { return m_items.end(); }

private:
    std::vector<T> copyOfItems() const {
        TSynchronize<M> lock(m_mutex);
        return m_items;
    }

    mutable M m_mutex;
    std::vector<T> m_items;
};

} // namespace quillon
