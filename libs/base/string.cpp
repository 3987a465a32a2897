#include "base/string.h"

#include "base/assertion.h"
#include "base/immortal.h"
#include "base/memory.h"

#include <array>

namespace quillon {

namespace {

constinit Immortal<String> g_null;

// Each character followed by a NUL, so that a one-character string is a C string as it stands.
constexpr auto makeCharacters() {
    std::array<char[2], 256> table{};
    for (unsigned i = 0; i < table.size(); ++i)
        table[i][0] = static_cast<char>(i);
    return table;
}

constinit std::array<char[2], 256> ms_character = makeCharacters();

} // namespace

String const& String::null = g_null.value;

char* String::character(char c) noexcept {
    return ms_character[static_cast<unsigned char>(c)];
}

String::String(char const* text) : m_string(const_cast<char*>(text)) {
    QUILLON_ASSERT(m_string, "m_string");
    std::size_t const length = std::strlen(text);
    QUILLON_ASSERT(length < npos, "a string is shorter than npos");
    m_length = static_cast<unsigned>(length);
}

String::String(char const* bytes, unsigned length)
    : String(bytes, length, length ? MemoryBlock::foreign() : nullptr) {}

String::String(char const* bytes, unsigned length, gc::Pointer<MemoryBlock> const& block)
    : String(bytes, length, block.get()) {}

String::String(char const* bytes, unsigned length, MemoryBlock* block)
    : m_length(length), m_block(block), m_string(const_cast<char*>(bytes)) {
    QUILLON_ASSERT(m_string, "m_string");
}

String::String(Memory const& memory) : String() {
    append(memory);
}

String::String(StringAddition const& addition) : String() {
    append(addition);
}

String String::copyOf(std::string_view bytes) {
    QUILLON_ASSERT(bytes.size() < npos, "a string is shorter than npos");
    String copy;
    copy.appendBytes(bytes.data(), static_cast<unsigned>(bytes.size()));
    return copy;
}

String String::clone() const {
    return copyOf(view());
}

String String::owned() const {
    return m_block && m_block.get() != MemoryBlock::foreign() ? *this : clone();
}

char const* String::str() const {
    if (m_length == 0)
        return "";
    if (!m_block) // static bytes: a C string, or a piece of one
        return m_string[m_length] == '\0' ? m_string : (relocate(1), m_string);

    MemoryBlock const& block = *m_block;
    bool const endsInBlock =
        block.array() && static_cast<std::size_t>(m_string - block.array()) + m_length < block.capacity();
    if (!endsInBlock || m_string[m_length] != '\0')
        relocate(1);
    return m_string;
}

bool String::isWritable() const noexcept {
    return m_block && m_string == m_block.get()->array() && m_block.get()->gcCount() < 2;
}

void String::relocate(unsigned more) const {
    unsigned const size = m_length + more + 1;
    QUILLON_ASSERT(size > m_length, "a string is shorter than npos");
    gc::Pointer<MemoryBlock> block(MemoryBlockPool::take(size));
    std::memcpy(block->array(), m_string, m_length);
    block->array()[m_length] = '\0';
    m_string = block->array();
    m_block = std::move(block);
}

char* String::reserve(unsigned count) {
    if (count == 0)
        count = 1;
    unsigned const size = m_length + count + 1;
    QUILLON_ASSERT(size > m_length, "a string is shorter than npos");
    if (isWritable()) {
        if (m_block->capacity() - m_length <= count) {
            // A string that grows byte by byte to a hundred megabytes must not be moved for every 64 of them
            // where the allocator cannot extend the array: large blocks grow by an eighth.
            unsigned const ahead = m_block->capacity() + m_block->capacity() / 8;
            m_block->resize(m_length > MemoryBlockPool::maxCachedCapacity && ahead > size ? ahead : size);
            m_string = m_block->array();
        }
    } else {
        relocate(count);
    }
    m_string[m_length + count] = '\0';
    return m_string + m_length;
}

void String::resize(unsigned length) {
    if (length > m_length)
        reserve(length - m_length);
    m_length = length;
}

String& String::appendBytes(char const* bytes, unsigned length) {
    if (length == 0)
        return *this;
    // Bytes of this string's own block, which reserve() would move, are kept where they are by a second
    // owner.
    gc::Pointer<MemoryBlock> keep;
    if (isInBlock(bytes))
        keep = m_block;
    std::memcpy(reserve(length), bytes, length);
    m_length += length;
    return *this;
}

bool String::isInBlock(char const* bytes) const noexcept {
    return m_block && bytes >= m_block.get()->array() &&
           bytes < m_block.get()->array() + m_block.get()->capacity();
}

String& String::appendViews(std::string_view const* parts, std::size_t count) {
    std::size_t total = 0;
    gc::Pointer<MemoryBlock> keep; // as in appendBytes()
    for (std::size_t i = 0; i < count; ++i) {
        total += parts[i].size();
        if (isInBlock(parts[i].data()))
            keep = m_block;
    }
    QUILLON_ASSERT(total < npos, "a string is shorter than npos");
    reserve(static_cast<unsigned>(total));
    for (std::size_t i = 0; i < count; ++i)
        appendBytes(parts[i].data(), static_cast<unsigned>(parts[i].size()));
    return *this;
}

String& String::append(String const& other) {
    if (m_length == 0 && other.m_length != 0)
        return *this = other;
    return appendBytes(other.m_string, other.m_length);
}

String& String::append(Memory const& memory) {
    QUILLON_ASSERT(memory.size() < npos, "a string is shorter than npos");
    return appendBytes(memory.array(), static_cast<unsigned>(memory.size()));
}

String& String::append(StringAddition const& addition) {
    if (addition.length() != 0)
        addition.appendTo(*this);
    return *this;
}

String& String::append(unsigned count, char c) {
    if (count != 0) {
        std::memset(reserve(count), c, count);
        m_length += count;
    }
    return *this;
}

void String::setAt(unsigned index, char c) {
    QUILLON_ASSERT(index < m_length, "index < length");
    if (!isWritable())
        relocate(1);
    m_string[index] = c;
}

void String::cut(unsigned length) noexcept {
    if (length < m_length)
        m_length = length;
}

} // namespace quillon
