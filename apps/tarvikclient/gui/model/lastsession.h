// What a person reads of a session that did not end in order.
#pragma once

#include "tarvikclient/leftsession.h"

#include <wx/string.h>

namespace quillon {

/// What happened and when, in the interface's language. Names come as the mark had them, which is fit to be
/// shown. Interface thread.
wxString lastSessionText(LeftSession const& session);

} // namespace quillon
