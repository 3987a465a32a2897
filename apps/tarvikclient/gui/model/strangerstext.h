// Text of strangers within the program's own sentences.
#pragma once

#include "base/string.h"

#include <wx/string.h>

#include <initializer_list>
#include <utility>

namespace quillon {

/// Text that came over the network, fit to stand in a label: without control characters and such as show
/// nothing or turn the direction of writing, at most `longest` characters long (the middle is left out), and
/// kept apart from the direction of what stands around it. Any thread.
wxString strangersText(String const& text, std::size_t longest = 48);
wxString strangersText(wxString const& text, std::size_t longest = 48);

/// The same for a text of many lines, of which one is as long as it likes: lines and tabs stay, nothing is
/// left out.
wxString strangersLines(wxString const& text);

/// A sentence with values in place of its place-holders, "{name}" for instance. What is in a value is not
/// looked at again. Any thread.
wxString filledIn(wxString const& sentence,
                  std::initializer_list<std::pair<char const*, wxString>> const& values);

} // namespace quillon
