// A server's name as somebody types or pastes it.
#pragma once

#include <wx/string.h>

namespace quillon {

/// "host" or "host:port" as the client's requests name that server, whose bytes an exception from
/// certificate checks has to have; empty when `typed` names none. Of a pasted URL the authority counts,
/// without user info. Takes international names and IPv6 addresses with or without brackets.
///
/// Requests name `gateway` as the launch URL does, which may be in other letters or with the default port.
/// Any other server is expected to be named in lower case, without default port or dot at its end.
/// No texts of the interface; any thread.
wxString serverNamedBy(wxString const& typed, wxString const& gateway);

} // namespace quillon
