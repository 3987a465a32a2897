// A failed connection in the user's words.
#pragma once

#include "tarvikclient/gui/model/connectionerror.h"

#include <wx/string.h>

namespace quillon {

/// Sentences in the interface's language; no markup, no mnemonics.
struct ConnectionAdvice {
    wxString happened;
    wxString whatToDo;
};

/// What the advice depends on beside the error.
struct ConnectionPlace {
    wxString gateway;            ///< its host, and port if there is one; empty: unknown
    bool allowsException = true; ///< whether the policy lets the user have certificates not checked
    std::time_t now = std::time(nullptr);
};

/// Interface thread.
ConnectionAdvice adviceOn(ConnectionError const& error, ConnectionPlace const& place);

/// A day of this computer's calendar as the interface's language writes it.
wxString dayOf(std::time_t time);

/// What stands for a gateway in a sentence; its name may be empty and of any length.
wxString gatewayInText(wxString const& gateway);

} // namespace quillon
