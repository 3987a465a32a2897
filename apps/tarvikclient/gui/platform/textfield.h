// Fields of one line.
#pragma once

class wxTextCtrl;

namespace quillon {

/// How tall a field of one line is drawn, in pixels of the toolkit: wxWidgets' own answer is too little in a
/// large font. Interface thread only.
int heightOfField(wxTextCtrl& field);

} // namespace quillon
