// What a screen reader says of a control beyond what wxWidgets tells it.
#pragma once

class wxString;
class wxWindow;

namespace quillon {

/// Has the label, a text beside or above the control, be read out as the control's name. It has to be the one
/// that was made before the control: wxWidgets takes each text, and a box's title, for the label of whatever
/// comes next in the same window. Interface thread only, as is all below.
void setLabelOf(wxWindow& control, wxWindow& label);

/// The name of a control that has no label on the screen; it is never shown.
void setAccessibleName(wxWindow& control, wxString const& name);

/// What is read out after the name: what is wrong with a field, say. Empty for nothing.
void setAccessibleDescription(wxWindow& control, wxString const& description);

} // namespace quillon
