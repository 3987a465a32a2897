// Labels of several lines.
#pragma once

#include <wx/string.h>

class wxStaticText;
class wxWindow;

namespace quillon {

/// Shows a text, as it stands, in lines of at most `width` pixels, which are broken at blanks or, in a longer
/// run, within it. The end of a very long text is left out. Interface thread only.
void setWrappedLabel(wxStaticText& label, wxString const& text, int width);

/// How wide texts of so many characters are, in pixels of the screen that the window is on; less where they
/// would not go onto that screen.
int textWidth(wxWindow const& window, int characters);

} // namespace quillon
