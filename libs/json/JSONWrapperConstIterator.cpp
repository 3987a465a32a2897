#include "json/JSONWrapperConstIterator.h"

#include <json/value.h>

namespace quillon::json {

JSONWrapperConstIterator::JSONWrapperConstIterator(Json::ValueConstIterator const& position)
    : m_position(std::make_unique<Json::ValueConstIterator>(position)) {}

JSONWrapperConstIterator::JSONWrapperConstIterator(JSONWrapperConstIterator const& other)
    : JSONWrapperConstIterator(*other.m_position) {}

JSONWrapperConstIterator::JSONWrapperConstIterator(JSONWrapperConstIterator&&) noexcept = default;

JSONWrapperConstIterator& JSONWrapperConstIterator::operator=(JSONWrapperConstIterator other) noexcept {
    m_position.swap(other.m_position);
    return *this;
}

JSONWrapperConstIterator::~JSONWrapperConstIterator() = default;

JSONWrapper JSONWrapperConstIterator::operator*() const {
    return JSONWrapper(**m_position);
}

JSONWrapperConstIterator& JSONWrapperConstIterator::operator++() {
    ++*m_position;
    return *this;
}

JSONWrapperConstIterator JSONWrapperConstIterator::operator++(int) {
    JSONWrapperConstIterator before(*this);
    ++*this;
    return before;
}

bool JSONWrapperConstIterator::operator==(JSONWrapperConstIterator const& other) const {
    return *m_position == *other.m_position;
}

String JSONWrapperConstIterator::name() const {
    return String::copyOf(m_position->name());
}

} // namespace quillon::json
