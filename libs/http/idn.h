// International host names.
#pragma once

#include "base/string.h"

namespace quillon::http::native {

/// The ASCII form of a name in UTF-8, mapped as libcurl does it (IDNA 2008, UTS 46 without transitional
/// forms); empty when there is none. Where the system has no library for it, always: libcurl knows no
/// international names there either. Any thread.
String idnToAscii(String const& name);

/// The UTF-8 form of an ASCII name; empty when there is none. Any thread.
String idnToUnicode(String const& name);

} // namespace quillon::http::native
