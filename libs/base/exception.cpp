#include "base/exception.h"

#include "base/stringconversion.h"

namespace quillon {

namespace {

String lastComponent(String const& path) {
    return path.find('/') != String::npos ? path.rright('/') : path.rright('\\');
}

} // namespace

Exception::Exception(int code, String const& name, String const& file, int line)
    : m_name(name.owned()),
      m_file(lastComponent(file).owned()),
      m_line(line),
      m_code(code),
      m_what(toString()) {
    m_what.str();
}

String Exception::toString() const {
    String text = m_name + ":" + m_file + ":" + quillon::toString(m_line);
    if (m_code != 0)
        text.append("(", quillon::toString(m_code), ")");
    return text;
}

String Exception::trace(String const& file, int line) const {
    return toString() + " -> " + lastComponent(file) + ":" + quillon::toString(line);
}

} // namespace quillon
