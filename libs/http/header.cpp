#include "http/header.h"

#include "base/strings.h"
#include "http/knownheaders.h"

namespace quillon::http {

namespace {

// Keys are compared without regard to case all the same, since one of the known ones has a capital.
String keyOf(String const& name) {
    KnownHeader const* const known = findKnownHeader(name);
    return known ? known->key : name.lower();
}

String withoutLineEnd(String const& line) {
    unsigned length = line.length();
    while (length > 0 && (line[length - 1] == '\n' || line[length - 1] == '\r'))
        --length;
    return line.range(0, length);
}

} // namespace

void Header::addLine(String const& line) {
    String const text = withoutLineEnd(line).owned();
    if (text.empty())
        return;
    bool const continues = text[0] == ' ' || text[0] == '\t';
    if (continues && !m_lines.empty()) {
        Line& last = m_lines.back();
        // The value shares its line's bytes until its first continuation, which copies it.
        last.value.append(' ').append(text.trim());
        last.text.append('\n').append(text);
        return;
    }
    unsigned const colon = text.find(':');
    if (colon == String::npos || continues)
        m_lines.push_back({text, String(), String()});
    else
        m_lines.push_back({text, keyOf(text.range(0, colon).trim()), text.range(colon + 1).trim()});
}

Strings Header::getLines() const {
    Strings lines;
    for (Line const& line : m_lines)
        lines.add(line.text);
    return lines;
}

Header::Line const* Header::find(String const& name) const {
    String const key = keyOf(name);
    for (Line const& line : m_lines)
        if (!line.key.empty() && line.key.equalsNoCase2(key))
            return &line;
    return nullptr;
}

String Header::getValue(String const& name) const {
    Line const* const line = find(name);
    return line ? line->value : String();
}

Strings Header::getValues(String const& name) const {
    String const key = keyOf(name);
    Strings values;
    for (Line const& line : m_lines)
        if (!line.key.empty() && line.key.equalsNoCase2(key))
            values.add(line.value);
    return values;
}

} // namespace quillon::http
