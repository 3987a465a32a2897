// Reads a small file as one must read what others would like to write.
#pragma once

#include "base/failure.h"

#include <sys/types.h>

#include <optional>

namespace quillon {

/// There is a file, or may be, that cannot be trusted or read. Nothing has been logged: reason() says why.
class EUntrustedFile : public Exception {
public:
    EUntrustedFile(String const& reason, Place place)
        : Exception("EUntrustedFile", place.file, place.line), m_reason(reason) {}

    String const& reason() const noexcept { return m_reason; }

private:
    String m_reason;
};

/// The file's content; nothing where there is no file, or no directory for it. Throws EUntrustedFile for all
/// else that is not a plain file of at most 64 KB, opened without following a link, in a directory, both of
/// them the owner's and writable by nobody else: in a directory that others write in, an absent file proves
/// nothing either. Any thread.
std::optional<String> readTrustedFile(String const& path, uid_t owner);

} // namespace quillon
