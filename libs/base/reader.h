// What a record is filled from: a stream of values, or a keyed document.
#pragma once

#include "base/exception.h"
#include "base/memory.h"

namespace quillon {

class ISerialize;

/// Base of the failures of readers.
class EReader : public Exception {
    using Exception::Exception;
};

/// A value of a keyed document that is absent or cannot be read as what is wanted.
class EKeyReader : public EReader {
    using EReader::EReader;
};

/// A stream of values. One thread at a time. Each read moves behind what it has read and throws an EReader,
/// or the implementation's own exception, when the value is not there.
class IReader {
public:
    virtual ~IReader() = default;

    virtual void read(unsigned short& value) = 0;
    virtual void read(unsigned int& value) = 0;
    virtual void read(short& value) = 0;
    virtual void read(int& value) = 0;
    virtual void read(bool& value) = 0;
    virtual void read(unsigned char& value) = 0;
    virtual void read(char& value) = 0;
    virtual void read(String& value) = 0;
    virtual void read(Memory& value) = 0;
    /// Lets the object fill itself from this reader.
    virtual void read(ISerialize& object) = 0;
    /// `count` bytes; the memory holds what was read, which is less only at the end.
    virtual void read(Memory& bytes, unsigned count) = 0;
    virtual void read(char* bytes, unsigned count) = 0;
    /// The number of bytes that are left.
    virtual unsigned sizeToRead() const = 0;
    virtual unsigned getReadPos() const = 0;
    virtual void setReadPos(unsigned position) = 0;
};

/// A reader positioned on one node of a keyed tree.
class IKeyReader : public IReader {
public:
    /// The number of children named `key`.
    virtual unsigned size(char const* key) const = 0;
    virtual unsigned size(String const& key) const = 0;
    virtual bool exists(char const* key) const = 0;
    virtual bool exists(String const& key) const = 0;
    /// The reader of the child named `key`; successive calls with one key give the successive children of
    /// that name. It belongs to this reader and is valid until the next call. Throws an EKeyReader when none
    /// is left.
    virtual IKeyReader& operator[](char const* key) = 0;
    virtual IKeyReader& operator[](String const& key) = 0;
    virtual bool hasAttribute(char const* name) const = 0;
    virtual String getAttribute(char const* name) const = 0;
};

} // namespace quillon
