// What a record is written to: a stream of values, or a keyed document.
#pragma once

#include "base/memory.h"

namespace quillon {

class ISerialize;

/// A stream of values. One thread at a time. A write that fails throws the implementation's exception.
class IWriter {
public:
    virtual ~IWriter() = default;

    virtual void write(unsigned short value) = 0;
    virtual void write(unsigned int value) = 0;
    virtual void write(short value) = 0;
    virtual void write(int value) = 0;
    virtual void write(bool value) = 0;
    virtual void write(unsigned char value) = 0;
    virtual void write(char value) = 0;
    virtual void write(String const& value) = 0;
    virtual void write(Memory const& value) = 0;
    /// Lets the object emit itself to this writer.
    virtual void write(ISerialize const& object) = 0;
    /// The first `count` bytes.
    virtual void write(Memory const& bytes, unsigned count) = 0;
    virtual void write(char const* bytes, unsigned count) = 0;
    /// Announces that `count` bytes will follow.
    virtual void reserve(unsigned count) = 0;

    // A literal is text: without this it would be taken for a bool.
    void write(char const* text) { write(String(text)); }
};

/// A writer positioned on one node of a keyed tree.
class IKeyWriter : public IWriter {
public:
    /// The writer of a new child named `key`; each call makes one more child. It belongs to this writer and
    /// is valid until the next call.
    virtual IKeyWriter& operator[](char const* key) = 0;
    virtual IKeyWriter& operator[](String const& key) = 0;
    /// Sets an attribute of the current node.
    virtual void operator()(String const& name, String const& value) = 0;
};

} // namespace quillon
