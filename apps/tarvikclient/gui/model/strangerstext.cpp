#include "tarvikclient/gui/model/strangerstext.h"

#include "tarvikclient/gui/model/wxconversion.h"

namespace quillon {

namespace {

constexpr wchar_t ellipsis = 0x2026;
constexpr wchar_t isolate = 0x2068, endOfIsolate = 0x2069;

struct Range {
    unsigned first, last;
};

/// What a reader does not see, or what has the text read in another order: controls, the soft hyphen, joiners
/// and marks of direction, separators of lines, fillers, variation selectors, tags.
constexpr Range unseen[] = {
    {0x00, 0x1F},     {0x7F, 0x9F},     {0xAD, 0xAD},       {0x34F, 0x34F},   {0x61C, 0x61C},
    {0x115F, 0x1160}, {0x17B4, 0x17B5}, {0x180B, 0x180F},   {0x200B, 0x200F}, {0x2028, 0x202E},
    {0x2060, 0x206F}, {0x3164, 0x3164}, {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF}, {0xFFA0, 0xFFA0},
    {0xFFF0, 0xFFFB}, {0xD800, 0xDFFF}, {0xE0000, 0xE0FFF},
};

bool isSeen(wxUniChar c) {
    for (Range const& range : unseen)
        if (c.GetValue() >= range.first && c.GetValue() <= range.last)
            return false;
    return true;
}

} // namespace

wxString strangersText(String const& text, std::size_t longest) {
    return strangersText(quillonToWxString(text), longest);
}

wxString strangersText(wxString const& text, std::size_t longest) {
    wxString seen;
    std::size_t const looked = 4 * longest; // at either end
    for (wxUniChar const c : text.length() > 2 * looked ? text.Left(looked) + text.Right(looked) : text)
        if (isSeen(c))
            seen += c;
        else if (c == '\n' || c == '\t')
            seen += ' ';
    seen.Trim().Trim(false);
    if (seen.length() > longest)
        seen = seen.Left(longest / 2 - 1) + ellipsis + seen.Right(longest / 2);
    return seen.IsAscii() ? seen : isolate + seen + endOfIsolate;
}

wxString strangersLines(wxString const& text) {
    wxString seen;
    for (wxUniChar const c : text)
        if (isSeen(c) || c == '\n' || c == '\t')
            seen += c;
    return seen;
}

wxString filledIn(wxString const& sentence,
                  std::initializer_list<std::pair<char const*, wxString>> const& values) {
    wxString filled, rest = sentence;
    for (std::size_t open = rest.find('{'); open != wxString::npos; open = rest.find('{')) {
        filled += rest.Left(open);
        rest = rest.Mid(open);
        wxString const place = rest.BeforeFirst('}') + "}";
        wxString value = rest.Left(1);
        std::size_t length = 1;
        for (auto const& [name, text] : values)
            if (place == name) {
                value = text;
                length = place.length();
            }
        filled += value;
        rest = rest.Mid(length);
    }
    return filled + rest;
}

} // namespace quillon
