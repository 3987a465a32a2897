#include "tarvikclient/gui/platform/accessibility.h"

#include <objc/message.h>
#include <objc/runtime.h>
#include <wx/osx/core/cfstring.h>
#include <wx/window.h>

namespace quillon {

namespace {

/// One of NSAccessibility's setters. This is no Objective-C, whose call it would be otherwise.
template <class Value>
void tell(wxWindow& control, char const* setter, Value value) {
    auto const send = reinterpret_cast<void (*)(WXWidget, SEL, Value)>(&objc_msgSend);
    send(control.GetHandle(), sel_registerName(setter), value);
}

} // namespace

void setLabelOf(wxWindow& control, wxWindow& label) {
    tell(control, "setAccessibilityTitleUIElement:", label.GetHandle());
}

void setAccessibleName(wxWindow& control, wxString const& name) {
    tell(control, "setAccessibilityLabel:", wxCFStringRef(name).AsNSString());
}

void setAccessibleDescription(wxWindow& control, wxString const& description) {
    tell(control, "setAccessibilityHelp:", wxCFStringRef(description).AsNSString());
}

} // namespace quillon
