// Reads keyed records from a document.
#pragma once

#include "xml/cursor.h"
#include "xml/keyreader.h"

namespace quillon::xml {

/// A document as a keyed record whose one key is the name of the root element; owns the document. Read from
/// the document itself, a value or an absent key is an EParserReader; the readers of its elements are
/// KeyReaders.
class ParserReader : public KeyReader {
public:
    /// Reads and parses a file. Throws EFile when it cannot be opened, EParserReader when it does not parse.
    explicit ParserReader(String const& fileName, Disclosure disclosure = Disclosure::excerpts);
    /// Parses a document that is in memory. Throws EParserReader.
    static ParserReader fromText(String const& text, Disclosure disclosure = Disclosure::excerpts);

    using KeyReader::operator[];
    IKeyReader& operator[](String const& key) override;

protected:
    [[noreturn]] void refuse() const override;

private:
    explicit ParserReader(std::unique_ptr<Element> document) noexcept
        : KeyReader(*document), m_document(std::move(document)) {}
    String text() const override;

    std::unique_ptr<Element> m_document; // nameless, the parent of the root element
};

} // namespace quillon::xml
