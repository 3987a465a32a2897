// Values as text.
#pragma once

#include "base/serialize.h"
#include "base/stringconversion.h"

#include <algorithm>

namespace quillon {

/// Implements the scalar writes of Interface, an IWriter or IKeyWriter, on top of one operation that takes
/// bytes: numbers in decimal, "true" or "false", strings and buffers as they stand.
template <class Interface>
class TextWriter : public Interface {
public:
    using Interface::write;

    void write(unsigned short value) override { putText(toString(value)); }
    void write(unsigned int value) override { putText(toString(value)); }
    void write(short value) override { putText(toString(value)); }
    void write(int value) override { putText(toString(value)); }
    void write(bool value) override { putText(toString(value)); }
    void write(unsigned char value) override { putText(toString(value)); }
    void write(char value) override { put(&value, 1); }
    void write(String const& value) override { putText(value); }
    void write(Memory const& value) override { put(value.array(), static_cast<unsigned>(value.size())); }
    void write(ISerialize const& object) override { object.read(static_cast<Interface&>(*this)); }
    /// At most what `bytes` holds.
    void write(Memory const& bytes, unsigned count) override {
        put(bytes.array(), static_cast<unsigned>(std::min<std::size_t>(count, bytes.size())));
    }
    void write(char const* bytes, unsigned count) override { put(bytes, count); }
    void reserve(unsigned) override {}

protected:
    virtual void put(char const* bytes, unsigned count) = 0;

private:
    void putText(String const& text) { put(text.array(), text.length()); }
};

} // namespace quillon
