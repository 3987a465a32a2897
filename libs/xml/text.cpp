#include "xml/text.h"

#include "xml/references.h"

namespace quillon::xml {

String Text::toXml(String const&) const {
    String out;
    appendEscaped(out, m_text);
    return out;
}

} // namespace quillon::xml
