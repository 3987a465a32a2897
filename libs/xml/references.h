// Character references: what stands for a character that would be markup.
#pragma once

#include "base/string.h"

namespace quillon::xml {

/// The text with the five predefined entities (&amp; &lt; &gt; &quot; &apos;) and numeric references replaced
/// by their characters in UTF-8. Any other "&" stays as it is, because the key writer escapes nothing: a
/// value with a "&" in it has to come back. Shares the bytes when there is nothing to replace.
String decodeReferences(String const& raw);

/// Appends `text` as character data: "&" and "<" become references, and so does `quote` when it is one.
void appendEscaped(String& out, String const& text, char quote = '\0');

} // namespace quillon::xml
