#include "base/confhelper.h"

#include "base/log.h"

namespace quillon {

namespace {

[[noreturn]] void throwMissing(int line) {
    throw EConfMissingKey("EConfMissingKey", "libs/base/confhelper.cpp", line);
}

void logMissing(char const* method, char const* key) {
    log(ERROR, "ConfReadHelper", method, String("Missing tag: <") + key + ">");
}

} // namespace

ConfReadHelper ConfReadHelper::get(char const* key, unsigned flags) const {
    if (!m_missing && m_reader->exists(key))
        return ConfReadHelper((*m_reader)[key]);
    if (flags & required) {
        logMissing("get", key);
        throwMissing(__LINE__);
    }
    return ConfReadHelper();
}

bool ConfReadHelper::keyIsAbsent(char const* key, unsigned flags) {
    if (!(flags & required))
        return false;
    logMissing("readKey", key);
    throwMissing(__LINE__);
}

bool ConfReadHelper::keyIsUnreadable(char const* key, unsigned flags, Exception const& reason) {
    log(TRACE, "Exception", "catch", reason.trace("libs/base/confhelper.cpp", __LINE__));
    log(ERROR, "ConfReadHelper", "readKey", String("Error while reading key: \"") + key + "\"");
    if (flags & required)
        throwMissing(__LINE__);
    return false;
}

} // namespace quillon
