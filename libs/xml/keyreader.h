// Reads keyed records from the elements of a document.
#pragma once

#include "base/keyreaderdefaults.h"
#include "base/stringconversion.h"
#include "xml/childindex.h"
#include "xml/exceptions.h"

#include <optional>

namespace quillon::xml {

/// An element as a keyed record: each child element is a key, named ignoring ASCII case, and its text the
/// value.
///
/// operator[] hands each child out once: it hides it, so repeated calls with one name walk through the
/// elements of that name, and exists() and size() tell of those that are left. Attributes are named byte for
/// byte; an absent one reads as the empty string. Failures are xml::EKeyReader. One thread at a time for all
/// readers of one document.
class KeyReader : public KeyReaderDefaults<EKeyReader> {
public:
    /// `element` and its document must outlive the reader.
    explicit KeyReader(Element& element) noexcept : m_element(&element) {}
    ~KeyReader() override;
    KeyReader(KeyReader const&) = delete;
    KeyReader& operator=(KeyReader const&) = delete;

    using KeyReaderDefaults::exists;
    using KeyReaderDefaults::read;
    using KeyReaderDefaults::size;
    using KeyReaderDefaults::operator[];

    // Text that is no number reads as toUint32() and its kin take it: no failure is reported.
    void read(unsigned short& value) override { value = toUint16(text()); }
    void read(unsigned int& value) override { value = toUint32(text()); }
    void read(short& value) override { value = toInt16(text()); }
    void read(int& value) override { value = toInt32(text()); }
    void read(unsigned char& value) override { value = static_cast<unsigned char>(toUint32(text())); }
    /// The text's first byte, 0 without text.
    void read(char& value) override;
    /// True: "true", "yes" (any case), "1"; false: "false", "no" (any case), "0". Anything else fails.
    void read(bool& value) override;
    void read(String& value) override { value = text(); }
    void read(Memory& value) override { value = Memory(text()); }

    unsigned size(String const& key) const override { return index().count(key); }
    bool exists(String const& key) const override { return index().count(key) != 0; }
    /// Always the same object, directed at another element by each call.
    IKeyReader& operator[](String const& key) override;
    bool hasAttribute(char const* name) const override { return m_element->hasAttribute(name); }
    String getAttribute(char const* name) const override;

protected:
    [[noreturn]] void refuse() const override;

private:
    virtual String text() const { return m_element->getText(); }
    ChildIndex& index() const;

    Element* m_element;
    mutable std::optional<ChildIndex> m_index; // made when first asked for a key
    std::unique_ptr<KeyReader> m_child;
};

} // namespace quillon::xml
