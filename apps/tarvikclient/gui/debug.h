// Aids for looking into a running program.
#pragma once

#include <wx/string.h>

namespace quillon::debug {

/// The process's id and the arguments, one a line. Any thread.
wxString describeParameters(int argc, char** argv);

/// Shows the process's id and arguments in a modal dialog. Interface thread only.
void showParameters(int argc, char** argv);

} // namespace quillon::debug
