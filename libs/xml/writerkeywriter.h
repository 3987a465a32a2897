// Writes keyed records as XML.
#pragma once

#include "base/textwriter.h"

#include <memory>

namespace quillon::xml {

/// The inside of one element, or of the document, as a keyed record. Each child element stands on a line of
/// its own, indented by one blank for each level; lines end in CR LF; an element that holds text alone takes
/// one line. Names and values are written as they are: nothing is escaped, so callers store plain text.
///
/// A child is closed when the next one is opened. What the output throws passes to the caller. One thread.
class WriterKeyWriter : public TextWriter<IKeyWriter> {
public:
    /// `output` is not owned and must outlive the writer. Not empty, `indentation` stands before each element
    /// of this level, on a new line.
    explicit WriterKeyWriter(IWriter& output, String const& indentation = String())
        : m_output(output), m_indentation(indentation.owned()) {}
    /// Closes what is open. A failure is logged and goes no further: call clear() first to learn of it.
    ~WriterKeyWriter() override;
    WriterKeyWriter(WriterKeyWriter const&) = delete;
    WriterKeyWriter& operator=(WriterKeyWriter const&) = delete;

    using TextWriter::write;

    /// Always the same object, directed at a new element by each call.
    IKeyWriter& operator[](String const& key) override;
    IKeyWriter& operator[](char const* key) override { return (*this)[String(key)]; }
    /// Throws EXmlAttribute when this element's start tag is complete: it has content already.
    void operator()(String const& name, String const& value) override;

    /// Closes the elements that are open in this one.
    void clear();

protected:
    /// A value: completes the start tag, closes the child that is open.
    void put(char const* bytes, unsigned count) override;

private:
    explicit WriterKeyWriter(WriterKeyWriter& parent)
        : m_output(parent.m_output),
          m_indentation(parent.m_indentation),
          m_depth(parent.m_depth + 1),
          m_parent(&parent) {}

    bool hasOpenChild() const noexcept { return !m_openChild.empty(); }
    void completeStartTag();
    void closeChild();
    void writeEndTag(bool onNewLine);
    void newLine();

    IWriter& m_output;
    String m_indentation; // of the outermost writer; one blank is added for each level
    unsigned m_depth = 0;
    String m_openChild; // its name
    bool m_startTagComplete = true;
    WriterKeyWriter* m_parent = nullptr;
    std::unique_ptr<WriterKeyWriter> m_child;
};

} // namespace quillon::xml
