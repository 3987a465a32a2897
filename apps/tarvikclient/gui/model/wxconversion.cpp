#include "tarvikclient/gui/model/wxconversion.h"

#include <wx/strconv.h>

namespace quillon {

String wxToQuillonString(wxString const& text) {
    wxCharBuffer const bytes = text.mb_str(wxConvLibc);
    return bytes.data() ? String::copyOf({bytes.data(), bytes.length()}) : String();
}

wxString quillonToWxString(String const& text) {
    wxString const utf8 = wxString::FromUTF8(text.array(), text.length());
    return utf8.empty() ? wxString(text.array(), wxConvISO8859_1, text.length()) : utf8;
}

} // namespace quillon
