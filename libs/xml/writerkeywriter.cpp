#include "xml/writerkeywriter.h"

#include "base/failure.h"
#include "xml/cursor.h"
#include "xml/exceptions.h"

#include <algorithm>

namespace quillon::xml {

WriterKeyWriter::~WriterKeyWriter() {
    try {
        clear();
    } catch (Exception const& e) {
        traceCaught(e);
    }
    // One by one: the chain of writers is as long as the document is deep. Each forgets what a failure has
    // left open, which its destructor would try to close.
    for (std::unique_ptr<WriterKeyWriter> child = std::move(m_child); child;) {
        child->m_openChild.clear();
        child->m_startTagComplete = true;
        child = std::move(child->m_child);
    }
}

IKeyWriter& WriterKeyWriter::operator[](String const& key) {
    completeStartTag();
    closeChild();
    if (!m_indentation.empty() || m_depth > 0)
        newLine();
    if (!m_child)
        m_child.reset(new WriterKeyWriter(*this));
    m_openChild = key.owned();
    m_child->m_startTagComplete = false;
    m_output.write('<');
    m_output.write(m_openChild);
    return *m_child;
}

void WriterKeyWriter::operator()(String const& name, String const& value) {
    if (m_startTagComplete)
        fail<EXmlAttribute>("xml.WriterKeyWriter", "operator()",
                            "the start tag is complete: " + excerpt(name));
    m_output.write(" " + name + "=\"" + value + "\"");
}

void WriterKeyWriter::put(char const* bytes, unsigned count) {
    completeStartTag();
    closeChild();
    m_output.write(bytes, count);
}

void WriterKeyWriter::clear() {
    // From the innermost open element outwards, without a recursion.
    WriterKeyWriter* writer = this;
    while (writer->hasOpenChild())
        writer = writer->m_child.get();
    writer->completeStartTag();
    for (bool hasElements = false; writer != this; hasElements = true) {
        writer = writer->m_parent;
        writer->writeEndTag(hasElements);
    }
}

void WriterKeyWriter::closeChild() {
    if (!hasOpenChild())
        return;
    bool const hasElements = m_child->hasOpenChild();
    m_child->clear();
    writeEndTag(hasElements);
}

void WriterKeyWriter::completeStartTag() {
    if (!std::exchange(m_startTagComplete, true))
        m_output.write('>');
}

void WriterKeyWriter::writeEndTag(bool onNewLine) {
    // Forgotten before it is written: what failed once is not written again by the destructor.
    String const name = std::exchange(m_openChild, String());
    if (onNewLine)
        newLine();
    m_output.write("</" + name + ">");
}

void WriterKeyWriter::newLine() {
    static constexpr char blanks[] = "                                                                ";
    m_output.write("\r\n" + m_indentation);
    for (unsigned left = m_depth; left > 0;) {
        unsigned const count = std::min<unsigned>(left, sizeof blanks - 1);
        m_output.write(blanks, count);
        left -= count;
    }
}

} // namespace quillon::xml
