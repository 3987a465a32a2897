#include "tarvikclient/gui/platform/accessibility.h"

#include <objc/message.h>
#include <objc/runtime.h>
#include <wx/window.h>

namespace quillon {

namespace {

/// One of NSAccessibility's setters. This is no Objective-C, whose call it would be otherwise.
template <class Value>
void tell(wxWindow& control, char const* setter, Value value) {
    auto const send = reinterpret_cast<void (*)(WXWidget, SEL, Value)>(&objc_msgSend);
    send(control.GetHandle(), sel_registerName(setter), value);
}

/// An NSString that lives until the event that is being handled is over.
id toNative(wxString const& text) {
    auto const make = reinterpret_cast<id (*)(Class, SEL, char const*)>(&objc_msgSend);
    return make(reinterpret_cast<Class>(objc_getClass("NSString")), sel_registerName("stringWithUTF8String:"),
                text.utf8_str());
}

} // namespace

void setLabelOf(wxWindow& control, wxWindow& label) {
    tell(control, "setAccessibilityTitleUIElement:", label.GetHandle());
}

void setAccessibleName(wxWindow& control, wxString const& name) {
    tell(control, "setAccessibilityLabel:", toNative(name));
}

void setAccessibleDescription(wxWindow& control, wxString const& description) {
    tell(control, "setAccessibilityHelp:", toNative(description));
}

} // namespace quillon
