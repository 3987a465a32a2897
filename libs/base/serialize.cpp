#include "base/serialize.h"

#include "base/log.h"

namespace quillon {

namespace {

[[noreturn]] void notImplemented(char const* method, int line) {
    log(ERROR, "IConf", method, "not implemented");
    throw ENotImplemented("ENotImplemented", "libs/base/confhelper.cpp", line);
}

} // namespace

void IConf::write(IReader&) {
    notImplemented("write", __LINE__);
}

void IConf::read(IWriter&) const {
    notImplemented("read", __LINE__);
}

void IConf::read(IKeyWriter&) const {
    notImplemented("read", __LINE__);
}

} // namespace quillon
