// The interface's language.
#pragma once

#include "base/string.h"

#include <wx/intl.h>

namespace quillon {

/// wxWidgets' identifier for "fr", "en", "de" or "es", in lower case; wxLANGUAGE_DEFAULT, which means the
/// system's, for any other code. Any thread.
int languageOfCode(String const& code);

/// Makes `language` the interface's and loads the catalogue "tarvikclient". Works also where the system has
/// no such locale installed: texts are translated all the same. A system language that we have no catalogue
/// for gives English; without any catalogue the keys stay.
///
/// Afterwards the C library's characters are UTF-8, and its numbers and messages those of "C": what modules
/// and the session read and log does not depend on the user. Only the calling thread has messages in the
/// interface's language. LANGUAGE is set in the environment.
///
/// Called once, before the first window and before the client's thread, on the interface's thread.
void initLanguage(wxLocale& locale, int language);

} // namespace quillon
