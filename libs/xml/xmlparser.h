// Records in XML files.
#pragma once

#include "base/serialize.h"
#include "xml/exceptions.h"

namespace quillon::xml {

/// Saves a record as a document and reads it back. Any thread; one thread at a time for one file.
class Parser {
public:
    /// Replaces the file by a document whose root element, named `rootName`, holds the record. True when all
    /// of it has been written; a failure is logged and goes no further.
    static bool write(String const& fileName, String const& rootName, ISerialize const& record);

    /// Fills the record from the file's root element. Throws EParser when the file is absent (without a log
    /// line), does not parse, or has a root element not named `rootName`, ignoring ASCII case; the record is
    /// unchanged then. What the record throws passes; it keeps the keys that it had read.
    static void read(String const& fileName, String const& rootName, ISerialize& record);
};

} // namespace quillon::xml
