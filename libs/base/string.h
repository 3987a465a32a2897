// The byte string of the whole system.
#pragma once

#include "base/memoryblock.h"

#include <concepts>
#include <cstring>
#include <string_view>

namespace quillon {

class Memory;
class SearchPattern;
class String;
class StringAddition;
class Strings;

/// What append() takes several of at once.
template <class T>
concept StringPart = std::same_as<T, String> || std::same_as<T, char> || std::convertible_to<T, char const*>;

/// A run of bytes in a shared, reference-counted block. Copies and pieces share the block and copy no bytes;
/// a string that is changed copies its bytes first unless it is the only one that uses the block.
///
/// The bytes need not be followed by a NUL: only str() gives a C string. Lengths and positions count bytes
/// and are below npos.
///
/// Strings may be copied and dropped on several threads at once. One String object is not guarded: changing
/// it, or str() when it has to move the bytes, must not meet another use of the same object.
class String {
public:
    /// "Not found", and "to the end" as a count.
    static constexpr unsigned npos = 0xFFFFFFFF;
    /// The shared empty string.
    static String const& null;

    constexpr String() noexcept : m_string(const_cast<char*>("")) {}
    String(String const&) noexcept = default;
    /// `other` is empty afterwards.
    String(String&& other) noexcept
        : m_length(std::exchange(other.m_length, 0)),
          m_block(std::move(other.m_block)),
          m_string(std::exchange(other.m_string, const_cast<char*>(""))) {}
    String& operator=(String const&) noexcept = default;
    String& operator=(String&& other) noexcept {
        m_block = std::move(other.m_block);
        m_length = std::exchange(other.m_length, 0);
        m_string = std::exchange(other.m_string, const_cast<char*>(""));
        return *this;
    }
    ~String() = default;

    /// Wraps a C string without copying it: the caller keeps the bytes alive, which is how literals become
    /// strings at no cost. A null pointer is a fatal assertion. Use clone() to keep a passing buffer's bytes.
    String(char const* text);
    /// Wraps `length` bytes without copying them; they need no NUL behind them, and none is looked for.
    String(char const* bytes, unsigned length);
    /// Adopts bytes that lie in `block`.
    String(char const* bytes, unsigned length, gc::Pointer<MemoryBlock> const& block);
    String(char const* bytes, unsigned length, MemoryBlock* block);
    /// One character, out of a static table.
    template <std::same_as<char> C>
    String(C c) : m_length(1), m_string(character(c)) {}
    /// Copies the bytes of a buffer.
    explicit String(Memory const& memory);
    /// Puts a builder's parts together: one allocation, one pass.
    String(StringAddition const& addition);
    /// A private copy of `bytes`.
    static String copyOf(std::string_view bytes);

    unsigned length() const noexcept { return m_length; }
    unsigned size() const noexcept { return m_length; }
    bool empty() const noexcept { return m_length == 0; }
    char operator[](unsigned index) const noexcept { return m_string[index]; }
    char const* begin() const noexcept { return m_string; }
    char const* end() const noexcept { return m_string + m_length; }
    /// The first byte; not terminated.
    char const* array() const noexcept { return m_string; }
    /// The bytes as a C string, valid until this string changes or goes. Bytes behind an embedded NUL are
    /// not seen by C code. May move this string's bytes to a block of its own.
    char const* str() const;
    std::string_view view() const noexcept { return {m_string, m_length}; }
    String const& toString() const noexcept { return *this; }
    /// A private copy of the bytes.
    String clone() const;
    /// A string that stays valid when wrapped bytes go away: shares a block, copies bytes that have none.
    String owned() const;
    void clear() noexcept { *this = String(); }

    // Comparison: byte for byte; the NoCase2 forms fold ASCII letters.
    bool equals(String const& other) const noexcept { return view() == other.view(); }
    bool equals(char const* text) const noexcept { return view() == text; }
    bool equals(char const* bytes, unsigned length) const noexcept {
        return view() == std::string_view(bytes, length);
    }
    bool equalsNoCase2(String const& other) const noexcept;
    bool operator==(String const& other) const noexcept { return equals(other); }
    bool operator==(char const* text) const noexcept { return equals(text); }
    bool operator<(String const& other) const noexcept { return view() < other.view(); }
    bool operator>(String const& other) const noexcept { return view() > other.view(); }
    /// Whether `prefix` stands at `from`, which nothing does beyond the end; a String from a char or a C
    /// string will do.
    bool starts(String const& prefix, unsigned from = 0) const noexcept;
    bool startsNoCase2(String const& prefix, unsigned from = 0) const noexcept;
    /// Whether the string, seen from `from` on, ends in `suffix`.
    bool ends(String const& suffix, unsigned from = 0) const noexcept;
    bool endsNoCase2(String const& suffix, unsigned from = 0) const noexcept;

    // Search: each returns a position counted from the string's start, or npos. `to` is exclusive.
    unsigned find(char c, unsigned from = 0) const noexcept;
    unsigned find(String const& pattern, unsigned from = 0) const noexcept;
    unsigned find(String const& pattern, unsigned from, unsigned to) const noexcept;
    unsigned find(char const* pattern, unsigned from = 0) const noexcept;
    unsigned find(char const* pattern, unsigned length, unsigned from, unsigned to) const noexcept;
    unsigned findNoCase2(char c, unsigned from = 0) const noexcept;
    unsigned findNoCase2(String const& pattern, unsigned from = 0) const noexcept;
    unsigned findNoCase2(String const& pattern, unsigned from, unsigned to) const noexcept;
    unsigned findNoCase2(char const* pattern, unsigned from = 0) const noexcept;
    unsigned findNoCase2(char const* pattern, unsigned length, unsigned from, unsigned to) const noexcept;
    unsigned rfind(char c) const noexcept { return rfind(c, npos); }
    /// The last occurrence at or before `from`.
    unsigned rfind(char c, unsigned from) const noexcept;
    unsigned rfind(char const* pattern) const noexcept { return rfind(String(pattern)); }
    unsigned rfind(String const& pattern) const noexcept;
    unsigned findFirstOf(char const* set, unsigned from, unsigned to = npos) const noexcept;
    /// The first white byte (blank, CR, LF, tab or NUL), or the first that is none.
    unsigned searchSpace(unsigned from = 0, unsigned to = npos) const noexcept;
    unsigned searchNoSpace(unsigned from = 0, unsigned to = npos) const noexcept;
    unsigned search(SearchPattern const* pattern, unsigned from = 0) const noexcept;
    /// `pattern` must have been made for letters of either case.
    unsigned searchNoCase2(SearchPattern const* pattern, unsigned from = 0) const noexcept;

    // Pieces: share the block.
    /// What stands before the first `c`. Without one: the whole string, or with `nullIfMissing` the empty
    /// one.
    String left(char c, bool nullIfMissing = false) const noexcept;
    /// What stands behind the first `c`; without one as left().
    String right(char c, bool nullIfMissing = false) const noexcept;
    /// The same around the last `c`; without one, the whole string.
    String rleft(char c) const noexcept;
    String rright(char c) const noexcept;
    /// At most `count` bytes from `from` on; empty when `from` is beyond the end.
    String range(unsigned from, unsigned count = npos) const noexcept;
    String substr(unsigned from, unsigned count = npos) const noexcept { return range(from, count); }

    // New strings.
    String upper() const;
    String lower() const;
    /// Without white bytes (blank, CR, LF, tab, NUL) at either end.
    String trim() const noexcept;
    String trim(char c) const noexcept { return trimLeft(c).trimRight(c); }
    String trimLeft(char c) const noexcept;
    String trimRight(char c) const noexcept;
    String replace(char what, char with) const;
    /// `what` must not be empty.
    String replace(String const& what, String const& with) const;
    String replace(char const* what, char const* with) const { return replace(String(what), String(with)); }
    String replaceNoCase2(String const& what, String const& with) const;
    /// The bytes in [from, to) replaced by `with`.
    String replaceBetween(unsigned from, unsigned to, String const& with) const;
    String remove(char c) const;
    String remove(String const& what) const { return replace(what, String()); }
    /// The bytes in ascending order.
    String sort() const;
    /// The items of `list` with this string between each two.
    String glue(Strings const& list) const;
    /// The bytes in Base64 (RFC 4648).
    String mimencode() const;

    // Change in place.
    String& append(char c) { return appendBytes(&c, 1); }
    /// Always copies the bytes, also into an empty string.
    String& append(char const* text) { return appendBytes(text, static_cast<unsigned>(std::strlen(text))); }
    String& append(char const* bytes, unsigned length) { return appendBytes(bytes, length); }
    /// An empty string becomes a shared copy of `other`.
    String& append(String const& other);
    String& append(Memory const& memory);
    String& append(StringAddition const& addition);
    /// Up to five strings, C strings and characters, in order and with one reservation.
    template <StringPart... Parts>
    requires(sizeof...(Parts) >= 2 && sizeof...(Parts) <= 5) String& append(Parts const&... parts) {
        std::string_view const views[] = {viewOf(parts)...};
        return appendViews(views, sizeof...(parts));
    }
    /// `count` times `c`.
    String& append(unsigned count, char c);
    template <class T>
    String& operator+=(T const& value) {
        return append(value);
    }
    /// Makes room for `count` more bytes and returns where they go. The length stays: the caller copies its
    /// bytes and then grows the string with resize().
    char* reserve(unsigned count);
    /// Changes the length; new bytes are whatever the block holds.
    void resize(unsigned length);
    void setAt(unsigned index, char c);
    /// Keeps the first `length` bytes; nothing happens when there are no more.
    void cut(unsigned length) noexcept;
    String& operator=(char c) { return *this = String(c); }

private:
    static char* character(char c) noexcept;
    static std::string_view viewOf(char const& c) noexcept { return {&c, 1}; }
    static std::string_view viewOf(char const* text) noexcept { return text; }
    static std::string_view viewOf(String const& text) noexcept { return text.view(); }

    String& appendViews(std::string_view const* parts, std::size_t count);
    String& appendBytes(char const* bytes, unsigned length);
    /// Whether `bytes` points into this string's own block, which growing may move.
    bool isInBlock(char const* bytes) const noexcept;
    /// Whether the bytes may be changed where they are.
    bool isWritable() const noexcept;
    /// Moves the bytes into a fresh block with room for `more` bytes and a NUL.
    void relocate(unsigned more) const;

    unsigned m_length = 0;
    // str() may move the bytes of a string that is otherwise constant.
    mutable gc::Pointer<MemoryBlock> m_block;
    mutable char* m_string;
};

} // namespace quillon

#include "base/stringaddition.h" // a + b
