// A pattern prepared once and searched for many times.
#pragma once

#include "base/string.h"

#include <array>

namespace quillon {

/// A Boyer-Moore-Horspool table for one pattern. Constant after construction: any number of threads may
/// search with one object.
class SearchPattern {
public:
    enum class Case { exact, ignored };

    explicit SearchPattern(String const& pattern, Case letters = Case::exact);

    String const& pattern() const noexcept { return m_pattern; }

    /// The first occurrence in `text` at or after `from`, or String::npos.
    unsigned findIn(String const& text, unsigned from) const noexcept;

private:
    char fold(char c) const noexcept;

    String m_pattern; // in lower case when case is ignored
    Case m_case;
    std::array<unsigned, 256> m_shift;
};

} // namespace quillon
