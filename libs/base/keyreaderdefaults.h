// A key reader that refuses everything, to derive from.
#pragma once

#include "base/serialize.h"

namespace quillon {

/// Base of key readers: every operation that a subclass does not override throws Error. Records fill
/// themselves with write(IKeyReader&); the C-string forms forward to the String forms.
template <class Error>
class KeyReaderDefaults : public IKeyReader {
public:
    using IKeyReader::read;

    void read(unsigned short&) override { refuse(); }
    void read(unsigned int&) override { refuse(); }
    void read(short&) override { refuse(); }
    void read(int&) override { refuse(); }
    void read(bool&) override { refuse(); }
    void read(unsigned char&) override { refuse(); }
    void read(char&) override { refuse(); }
    void read(String&) override { refuse(); }
    void read(Memory&) override { refuse(); }
    void read(ISerialize& object) override { object.write(static_cast<IKeyReader&>(*this)); }
    void read(Memory&, unsigned) override { refuse(); }
    void read(char*, unsigned) override { refuse(); }
    // The values returned are never seen: gcc does not believe a virtual function that it never returns.
    unsigned sizeToRead() const override {
        refuse();
        return 0;
    }
    unsigned getReadPos() const override {
        refuse();
        return 0;
    }
    void setReadPos(unsigned) override { refuse(); }

    unsigned size(char const* key) const override { return size(String(key)); }
    unsigned size(String const&) const override { return 0; }
    bool exists(char const* key) const override { return exists(String(key)); }
    bool exists(String const&) const override { return false; }
    IKeyReader& operator[](char const* key) override { return (*this)[String(key)]; }
    IKeyReader& operator[](String const&) override {
        refuse();
        return *this;
    }
    bool hasAttribute(char const*) const override { return false; }
    String getAttribute(char const*) const override { return String(); }

protected:
    /// Throws Error, with the place that the subclass gives.
    [[noreturn]] virtual void refuse() const = 0;
};

} // namespace quillon
