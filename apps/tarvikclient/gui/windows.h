// What the program's windows have in common.
#pragma once

#include <wx/iconbndl.h>

class wxTopLevelWindow;

namespace quillon {

/// The program's icons; none where no provider has them, which the toolkit would complain of in a message
/// box. Interface thread only.
wxIconBundle programIcons();

/// Puts a window into the middle of its parent, or of the screen where there is no parent to be seen: the
/// main frame is none. Interface thread only.
void centre(wxTopLevelWindow& window);

} // namespace quillon
