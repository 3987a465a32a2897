// What a publisher says of a module.
#pragma once

#include "base/serialize.h"

namespace quillon {

/// The record that is signed. Positional and keyed forms hold the four strings in the order of the fields.
class DllInfos : public ISerialize {
public:
    /// Behind a module's path: the path of the signature file, which holds the record.
    static constexpr char fileSuffix[] = ".sig";

    void write(IReader& reader) override;
    /// Throws an EKeyReader when a key is missing.
    void write(IKeyReader& reader) override;
    void read(IWriter& writer) const override;
    void read(IKeyWriter& writer) const override;

    String version;  ///< free text
    String name;     ///< free text
    String signdate; ///< as DateTime::toString() gives it
    String sha256;   ///< of the module file, in Base64
};

} // namespace quillon
