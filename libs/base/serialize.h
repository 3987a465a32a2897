// What can be read from and written to documents.
#pragma once

#include "base/reader.h"
#include "base/writer.h"

namespace quillon {

/// A record. The names are seen from the record: write() fills it from a reader, read() hands its content to
/// a writer.
class ISerialize {
public:
    virtual ~ISerialize() = default;

    virtual void write(IReader& reader) = 0;
    virtual void write(IKeyReader& reader) = 0;
    virtual void read(IWriter& writer) const = 0;
    virtual void read(IKeyWriter& writer) const = 0;
};

} // namespace quillon
