// Goes through the elements or members of a JSON value.
#pragma once

#include "json/JSONWrapper.h"

#include <iterator>
#include <memory>

namespace Json {
class ValueConstIterator;
}

namespace quillon::json {

/// Gives each element or member as a JSONWrapper. Valid as long as the document.
class JSONWrapperConstIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = JSONWrapper;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = JSONWrapper;

    explicit JSONWrapperConstIterator(Json::ValueConstIterator const& position);
    JSONWrapperConstIterator(JSONWrapperConstIterator const& other);
    JSONWrapperConstIterator(JSONWrapperConstIterator&&) noexcept;
    JSONWrapperConstIterator& operator=(JSONWrapperConstIterator other) noexcept;
    ~JSONWrapperConstIterator();

    JSONWrapper operator*() const;
    JSONWrapperConstIterator& operator++();
    JSONWrapperConstIterator operator++(int);
    bool operator==(JSONWrapperConstIterator const& other) const;

    /// The member's name; empty for an element of an array.
    String name() const;

private:
    std::unique_ptr<Json::ValueConstIterator> m_position; // hides jsoncpp's header
};

} // namespace quillon::json
