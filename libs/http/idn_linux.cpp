#include "http/idn.h"

#include <idn2.h>

namespace quillon::http::native {

namespace {

String takeOver(int result, char* text) {
    String copy = result == IDN2_OK ? String::copyOf(text) : String();
    idn2_free(text);
    return copy;
}

} // namespace

String idnToAscii(String const& name) {
    String const text = name; // its own, because str() may move the bytes
    unsigned char* ascii = nullptr;
    int const result = idn2_lookup_u8(reinterpret_cast<unsigned char const*>(text.str()), &ascii,
                                      IDN2_NFC_INPUT | IDN2_NONTRANSITIONAL);
    return takeOver(result, reinterpret_cast<char*>(ascii));
}

String idnToUnicode(String const& name) {
    String const text = name;
    char* unicode = nullptr;
    int const result = idn2_to_unicode_8z8z(text.str(), &unicode, 0);
    return takeOver(result, unicode);
}

} // namespace quillon::http::native
