#include "base/confhelper.h"

#include "base/failure.h"

namespace quillon {

namespace {

[[noreturn]] void notImplemented(char const* method, Place place = std::source_location::current()) {
    fail<ENotImplemented>("IConf", method, "not implemented", place);
}

void logMissing(char const* method, char const* key) {
    log(ERROR, "ConfReadHelper", method, String("Missing tag: <") + key + ">");
}

} // namespace

void IConf::write(IReader&) {
    notImplemented("write");
}

void IConf::read(IWriter&) const {
    notImplemented("read");
}

void IConf::read(IKeyWriter&) const {
    notImplemented("read");
}

ConfReadHelper ConfReadHelper::get(char const* key, unsigned flags) const {
    if (!m_missing && m_reader->exists(key))
        return ConfReadHelper((*m_reader)[key]);
    if (flags & required) {
        logMissing("get", key);
        failQuietly<EConfMissingKey>();
    }
    return ConfReadHelper();
}

bool ConfReadHelper::keyIsAbsent(char const* key, unsigned flags) {
    if (!(flags & required))
        return false;
    logMissing("readKey", key);
    failQuietly<EConfMissingKey>();
}

bool ConfReadHelper::keyIsUnreadable(char const* key, unsigned flags, Exception const& reason) {
    traceCaught(reason);
    log(ERROR, "ConfReadHelper", "readKey", String("Error while reading key: \"") + key + "\"");
    if (flags & required)
        failQuietly<EConfMissingKey>();
    return false;
}

} // namespace quillon
