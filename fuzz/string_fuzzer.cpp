// Strings against std::string: a sequence of operations on a few strings that share their bytes. Both sides
// are compared after each.
#include "base/memory.h"
#include "base/splitter.h"
#include "base/strings.h"
#include "base/visibletext.h"
#include "fuzz/fuzzer.h"

#include <algorithm>
#include <array>
#include <string>

using namespace quillon;
using fuzz::require;

namespace {

/// Takes the input apart; an input that is used up gives zeros.
class Choices {
public:
    Choices(std::uint8_t const* data, std::size_t size) : m_left(reinterpret_cast<char const*>(data), size) {}
    bool end() const { return m_left.empty(); }
    std::uint8_t byte() {
        auto const first = static_cast<std::uint8_t>(m_left.empty() ? 0 : m_left.front());
        m_left.remove_prefix(m_left.empty() ? 0 : 1);
        return first;
    }
    char character() { return static_cast<char>(byte()); }
    /// A position or count: mostly small, sometimes npos and its neighbours.
    unsigned number() {
        std::uint8_t const choice = byte();
        return choice < 0xF8 ? choice : String::npos - (0xFF - choice);
    }
    std::string bytes() {
        std::size_t const wanted = byte() % 100;
        std::string const taken(m_left.substr(0, wanted));
        m_left.remove_prefix(taken.size());
        return taken;
    }

private:
    std::string_view m_left;
};

/// One string, in the toolkit's form and in the standard's.
struct Pair {
    String mine;
    std::string model;

    void check() const { require(mine.view() == model); }
};

std::size_t wide(unsigned n) {
    return n == String::npos ? std::string::npos : n;
}

bool same(unsigned mine, std::size_t model) {
    return wide(mine) == model;
}

std::string lowered(std::string text, char first = 'A', int by = 'a' - 'A') {
    for (char& c : text)
        c = c >= first && c < first + 26 ? static_cast<char>(c + by) : c;
    return text;
}

std::string piece(std::string const& text, unsigned from, unsigned count) {
    return from >= text.size() ? std::string() : text.substr(from, wide(count));
}

std::string replacedAll(std::string const& text, std::string const& what, std::string const& with,
                        bool foldsCase) {
    std::string const seen = foldsCase ? lowered(text) : text;
    std::string const wanted = foldsCase ? lowered(what) : what;
    std::string out;
    std::size_t at = 0;
    for (std::size_t hit; (hit = seen.find(wanted, at)) != std::string::npos; at = hit + what.size())
        out += text.substr(at, hit - at) + with;
    return out + text.substr(at);
}

std::string trimmed(std::string const& text, char const* set, std::size_t setSize, bool left, bool right) {
    std::string_view const white(set, setSize);
    std::size_t const first = left ? text.find_first_not_of(white) : 0;
    if (first == std::string::npos)
        return {};
    std::size_t const last = right ? text.find_last_not_of(white) : text.size() - 1;
    return last == std::string::npos || text.empty() ? std::string() : text.substr(first, last - first + 1);
}

/// Bounded by `to`: the model is asked about the text that ends there.
std::size_t findBounded(std::string const& text, std::string const& pattern, unsigned from, unsigned to) {
    return text.substr(0, wide(to)).find(pattern, wide(from));
}

void change(Pair& a, Pair const& b, Choices& choices) {
    char const c = choices.character();
    switch (choices.byte() % 12) {
    case 0:
        a.mine.append(c), a.model += c;
        break;
    case 1:
        a.model += b.model, a.mine.append(b.mine);
        break;
    case 2:
        a.mine.append(b.mine.str()), a.model += std::string(b.model.c_str());
        break;
    case 3: {
        unsigned const count = choices.byte();
        a.mine.append(count, c), a.model.append(count, c);
        break;
    }
    case 4: { // its own bytes, which growing may move
        std::string const twice = a.model + c + a.model + b.model;
        a.mine.append(c, a.mine, b.mine), a.model = twice;
        break;
    }
    case 5: {
        std::string const sum = a.model + b.model + c + a.model;
        a.mine.append(b.mine + String(c) + a.mine), a.model = sum;
        break;
    }
    case 6:
        if (!a.model.empty()) {
            unsigned const index = choices.byte() % a.mine.length();
            a.mine.setAt(index, c), a.model[index] = c;
        }
        break;
    case 7: {
        unsigned const length = choices.number();
        a.mine.cut(length), a.model.resize(std::min<std::size_t>(length, a.model.size()));
        break;
    }
    case 8: {
        std::string const bytes = choices.bytes();
        char* const room = a.mine.reserve(static_cast<unsigned>(bytes.size()));
        std::copy(bytes.begin(), bytes.end(), room);
        a.mine.resize(a.mine.length() + static_cast<unsigned>(bytes.size())), a.model += bytes;
        break;
    }
    case 9:
        a.mine = c, a.model = std::string(1, c);
        break;
    case 10:
        a.mine.append(Memory(b.mine)), a.model += b.model;
        break;
    default:
        a.mine.append(a.mine.array(), a.mine.length() / 2), a.model += a.model.substr(0, a.model.size() / 2);
    }
}

Pair derived(Pair const& a, Pair const& b, Choices& choices) {
    char const c = choices.character(), d = choices.character();
    unsigned const from = choices.number(), count = choices.number();
    std::size_t const first = a.model.find(c), last = a.model.rfind(c);
    bool const found = first != std::string::npos, strict = d & 1;
    std::string const missing = strict ? std::string() : a.model;
    std::string changed = a.model;
    switch (choices.byte() % 21) {
    case 0:
        return {a.mine.range(from, count), piece(a.model, from, count)};
    case 1:
        return {a.mine.left(c, strict), found ? a.model.substr(0, first) : missing};
    case 2:
        return {a.mine.right(c, strict), found ? a.model.substr(first + 1) : missing};
    case 3:
    case 4:
        return strict ? Pair{a.mine.rleft(c), found ? a.model.substr(0, last) : a.model}
                      : Pair{a.mine.rright(c), found ? a.model.substr(last + 1) : a.model};
    case 5:
    case 6:
        return strict ? Pair{a.mine.upper(), lowered(a.model, 'a', 'A' - 'a')}
                      : Pair{a.mine.lower(), lowered(a.model)};
    case 7:
        return {a.mine.trim(), trimmed(a.model, " \r\n\t\0", 5, true, true)};
    case 8:
    case 9:
    case 10:
        return strict     ? Pair{a.mine.trimLeft(c), trimmed(a.model, &c, 1, true, false)}
               : from & 1 ? Pair{a.mine.trimRight(c), trimmed(a.model, &c, 1, false, true)}
                          : Pair{a.mine.trim(c), trimmed(a.model, &c, 1, true, true)};
    case 11:
        std::replace(changed.begin(), changed.end(), c, d);
        return {a.mine.replace(c, d), changed};
    case 12:
    case 13:
        return {a.mine.replace(String(c) + d, b.mine), replacedAll(a.model, {c, d}, b.model, false)};
    case 14:
        return {a.mine.replaceNoCase2(c, b.mine), replacedAll(a.model, {c}, b.model, true)};
    case 15: {
        std::size_t const begin = std::min<std::size_t>(from, a.model.size());
        std::size_t const end = std::clamp<std::size_t>(count, begin, a.model.size());
        return {a.mine.replaceBetween(from, count, b.mine),
                a.model.substr(0, begin) + b.model + a.model.substr(end)};
    }
    case 16:
        std::erase(changed, c);
        return {a.mine.remove(c), changed};
    case 17:
        std::ranges::sort(changed, {}, [](char each) { return static_cast<unsigned char>(each); });
        return {a.mine.sort(), changed};
    case 18: {
        Strings list;
        std::string joined;
        for (unsigned i = 0; i < from % 20; ++i) {
            list.add(i % 2 ? b.mine : String(c));
            joined += (i ? a.model : std::string()) + (i % 2 ? b.model : std::string(1, c));
        }
        return {a.mine.glue(list), joined};
    }
    case 19:
        return {a.mine + b.mine + c + a.mine + "text", a.model + b.model + c + a.model + "text"};
    default: { // no text changes twice, and none is longer than its escapes
        String const shown = visibleText(a.mine);
        require(visibleText(shown) == shown && shown.length() <= 4 * a.mine.length());
        require(a.mine.length() <= from ? cutText(a.mine, from) == a.mine
                                        : cutText(a.mine, from).length() <= from + 6ul);
        return a;
    }
    }
}

void ask(Pair const& a, Pair const& b, Choices& choices) {
    char const c = choices.character();
    unsigned const from = choices.number(), to = choices.number();
    std::string const la = lowered(a.model), lb = lowered(b.model);
    bool const inside = from <= a.model.size();
    require(same(a.mine.find(c, from), a.model.find(c, wide(from))));
    require(same(a.mine.find(b.mine, from), a.model.find(b.model, wide(from))));
    require(same(a.mine.find(b.mine, from, to), findBounded(a.model, b.model, from, to)));
    require(same(a.mine.findNoCase2(b.mine, from, to), findBounded(la, lb, from, to)));
    require(same(a.mine.findNoCase2(c, from), la.find(lowered({c}), wide(from))));
    require(same(a.mine.rfind(c, from), a.model.rfind(c, wide(from))));
    require(same(a.mine.rfind(b.mine), a.model.rfind(b.model)));
    require(same(a.mine.findFirstOf(b.mine.str(), from, to),
                 a.model.substr(0, wide(to)).find_first_of(b.model.c_str(), wide(from))));
    std::string_view const white(" \r\n\t\0", 5);
    require(same(a.mine.searchSpace(from, to), a.model.substr(0, wide(to)).find_first_of(white, wide(from))));
    require(same(a.mine.searchNoSpace(from, to),
                 a.model.substr(0, wide(to)).find_first_not_of(white, wide(from))));
    require((a.mine < b.mine) == (a.model < b.model) && (a.mine == b.mine) == (a.model == b.model));
    require(a.mine.equalsNoCase2(b.mine) == (la == lb));
    std::string const rest = inside ? a.model.substr(from) : std::string();
    require(a.mine.starts(b.mine, from) == (inside && rest.starts_with(b.model)));
    require(a.mine.startsNoCase2(b.mine, from) == (inside && lowered(rest).starts_with(lb)));
    require(a.mine.ends(b.mine, from) == (inside && rest.ends_with(b.model)));
    require(a.mine.endsNoCase2(b.mine, from) == (inside && lowered(rest).ends_with(lb)));
    require(std::string_view(a.mine.str(), a.mine.length() + 1) ==
            std::string_view(a.model.c_str(), a.model.size() + 1));
    CharSplitter split(a.mine, c);
    std::string joined;
    while (split.valid())
        joined.append(split.next().view()) += c;
    require(joined.substr(0, a.model.size()) == a.model);
}

} // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    constexpr std::size_t longest = 1 << 12;
    Choices choices(data, size);
    std::array<Pair, 4> pairs;
    while (!choices.end()) {
        std::uint8_t const which = choices.byte();
        Pair &a = pairs[which & 3], &b = pairs[which >> 2 & 3], &to = pairs[which >> 4 & 3];
        switch (which >> 6) {
        case 0:
            change(a, b, choices);
            break;
        case 1:
            to = derived(Pair(a), Pair(b), choices);
            break;
        case 2:
            ask(a, b, choices);
            break;
        default: {
            std::string const bytes = choices.bytes();
            to = {String::copyOf(bytes), bytes};
        }
        }
        for (Pair& pair : pairs) {
            pair.check();
            if (pair.model.size() > longest)
                pair = {};
        }
    }
    return 0;
}
