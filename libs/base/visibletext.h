// Text of strangers, made fit for terminals and logs.
#pragma once

#include "base/string.h"

namespace quillon {

/// The text with what a terminal would obey, or what would show its letters in another order, written out:
/// CR and LF as "\r" and "\n"; other control characters but the tab as "\x1b"; those of them above ASCII
/// (C1), bidirectional marks, overrides and isolates, and the separators of lines and paragraphs as
/// "\u202e". Bytes that are no UTF-8 stay, letters of an 8-bit character set for instance, except 0x80 to
/// 0x9F, which are C1 there and become "\x9b". A text without all these comes back as it is, uncopied.
String visibleText(String const& text);

/// The text if it is at most `most` bytes long, else as many of its first bytes as are whole UTF-8 sequences,
/// with " [...]" behind them.
String cutText(String const& text, unsigned most);

} // namespace quillon
