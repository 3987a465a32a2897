// The words that every program has: OK, Cancel, …
#pragma once

namespace quillon {

/// Has buttons and message boxes bear the catalogue's words for what wxWidgets leaves to the system. The
/// system's own are in another language where its catalogue is missing, and may be others than those of the
/// rest of the program. Called when the language has been chosen. Interface thread only.
void useOwnStockLabels();

} // namespace quillon
