// Dialogs that are the system's own.
#pragma once

class wxDialog;

namespace quillon {

/// Ends a message box that is being shown, as if it had been cancelled. wxWidgets does not count it as modal
/// and cannot end it. Interface thread only.
void endNativeDialog(wxDialog& dialog);

} // namespace quillon
