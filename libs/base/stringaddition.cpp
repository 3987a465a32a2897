#include "base/stringaddition.h"

#include "base/assertion.h"

namespace quillon {

StringAdditionBlock::~StringAdditionBlock() {
    // A long chain is taken apart link by link, not by one nested destructor for each.
    gc::Pointer<StringAdditionBlock> next = std::move(m_next);
    while (next && next->gcCount() == 1)
        next = std::move(next->m_next);
}

StringAddition::StringAddition(String const& first, String const& second) {
    add(first);
    add(second);
}

void StringAddition::add(String const& part) {
    if (!m_block)
        m_block = m_last = gc::Pointer<StringAdditionBlock>(new StringAdditionBlock);
    if (m_last->m_count == StringAdditionBlock::inlineCount) {
        m_last->m_next = gc::Pointer<StringAdditionBlock>(new StringAdditionBlock);
        m_last = m_last->m_next;
    }
    StringAdditionBlock& last = *m_last;
    last.m_strings[last.m_count++] = part;
    last.m_inlineLength += part.length();
    // Only the first block's total is kept up to date: nobody asks a successor for its own.
    m_block->m_totalLength += part.length();
    QUILLON_ASSERT(m_block->m_totalLength >= part.length(), "a string is shorter than npos");
}

unsigned StringAddition::length() const noexcept {
    return m_block ? m_block.get()->m_totalLength : 0;
}

void StringAddition::appendTo(String& target) const {
    if (!m_block)
        return;
    target.reserve(length());
    for (StringAdditionBlock const* block = m_block.get(); block; block = block->m_next.get())
        for (unsigned i = 0; i < block->m_count; ++i)
            target.append(block->m_strings[i].array(), block->m_strings[i].length());
}

} // namespace quillon
