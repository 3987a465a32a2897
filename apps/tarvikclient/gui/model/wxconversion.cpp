#include "tarvikclient/gui/model/wxconversion.h"

#include <wx/strconv.h>

namespace quillon {

String wxToQuillonString(wxString const& text) {
    wxCharBuffer const bytes = text.mb_str(wxConvLibc);
    return bytes.data() ? String::copyOf({bytes.data(), bytes.length()}) : String();
}

String wxToUtf8(wxString const& text) {
    wxScopedCharBuffer const utf8 = text.utf8_str();
    return String::copyOf({utf8.data(), utf8.length()});
}

wxString quillonToWxString(String const& text) {
    wxString const utf8 = wxString::FromUTF8(text.array(), text.length());
    return utf8.empty() ? wxString(text.array(), wxConvISO8859_1, text.length()) : utf8;
}

} // namespace quillon
