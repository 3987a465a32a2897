// Between the toolkit's byte strings and wxWidgets' text.
#pragma once

#include "base/string.h"

#include <wx/string.h>

namespace quillon {

/// The text in the C library's current multibyte encoding; the empty string when that cannot express it.
/// Any thread.
String wxToQuillonString(wxString const& text);

/// The text in UTF-8, whatever the C library's encoding is. Any thread.
String wxToUtf8(wxString const& text);

/// The text of UTF-8 bytes. Bytes that are not UTF-8 are read as Latin-1: something is always shown. The
/// result shares nothing with `text`, so it may be handed to another thread. Any thread.
wxString quillonToWxString(String const& text);

} // namespace quillon
