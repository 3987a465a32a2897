// Concatenation in one allocation: a + b + c collects the parts and puts them together at the end.
#pragma once

#include "base/string.h"

#include <array>

namespace quillon {

/// One link of a builder's chain: up to eight parts, and the links behind it.
class StringAdditionBlock final : public gc::ObjectDelete {
public:
    static constexpr unsigned inlineCount = 8;

    ~StringAdditionBlock() override;
    char const* getClassName() const noexcept override { return "StringAdditionBlock"; }

private:
    friend class StringAddition;

    unsigned m_count = 0;
    std::array<String, inlineCount> m_strings;
    unsigned m_totalLength = 0;  // of this block and its successors; kept in the chain's first block
    unsigned m_inlineLength = 0; // of this block's own strings
    gc::Pointer<StringAdditionBlock> m_next;
};

/// The builder that String + String yields. Copies share the chain: put a builder together before it is
/// extended from two places. The parts are shared, not copied, so a part made from a passing buffer must
/// outlive the builder. One thread at a time.
class StringAddition {
public:
    StringAddition() = default;
    StringAddition(String const& first, String const& second);

    /// Adds one part at the end; constant time whatever the number of parts.
    void add(String const& part);

    /// The number of bytes of all parts.
    unsigned length() const noexcept;
    /// Appends the parts to `target` with one reservation.
    void appendTo(String& target) const;
    String toString() const { return String(*this); }

private:
    gc::Pointer<StringAdditionBlock> m_block;
    gc::Pointer<StringAdditionBlock> m_last;
};

inline StringAddition operator+(String const& first, String const& second) {
    return StringAddition(first, second);
}

inline StringAddition operator+(StringAddition addition, String const& part) {
    addition.add(part);
    return addition;
}

} // namespace quillon
