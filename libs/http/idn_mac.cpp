#include "http/idn.h"

// The system's libcurl is built without international names: a session with such a host fails there.
namespace quillon::http::native {

String idnToAscii(String const&) {
    return String();
}

String idnToUnicode(String const&) {
    return String();
}

} // namespace quillon::http::native
