// Fatal errors in the user's words.
#pragma once

#include "tarvikclient/sessionfailure.h"

#include <wx/string.h>

#include <exception>
#include <vector>

namespace quillon {

/// Paragraphs in the interface's language: what happened, and what to do. What the gateway itself has sent is
/// marked as its own words. `gateway` may be empty. Interface thread.
std::vector<wxString> textsOf(SessionFailure const& failure, wxString const& gateway);

/// The same for what kept the program from starting a session at all.
std::vector<wxString> textsOfStart(std::exception_ptr const& failure);

} // namespace quillon
