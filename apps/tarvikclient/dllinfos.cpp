#include "tarvikclient/dllinfos.h"

namespace quillon {

void DllInfos::write(IReader& reader) {
    for (String* const field : {&version, &name, &signdate, &sha256})
        reader.read(*field);
}

void DllInfos::write(IKeyReader& reader) {
    reader["version"].read(version);
    reader["name"].read(name);
    reader["signdate"].read(signdate);
    reader["sha256"].read(sha256);
}

void DllInfos::read(IWriter& writer) const {
    for (String const* const field : {&version, &name, &signdate, &sha256})
        writer.write(*field);
}

void DllInfos::read(IKeyWriter& writer) const {
    writer["version"].write(version);
    writer["name"].write(name);
    writer["signdate"].write(signdate);
    writer["sha256"].write(sha256);
}

} // namespace quillon
