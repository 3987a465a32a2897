// A writer that collects text in a string.
#pragma once

#include "base/textwriter.h"

namespace quillon {

/// Asked to write more bytes than it was given.
class EStringWriter : public Exception {
    using Exception::Exception;
};

/// Appends what is written to a string, with no separator, length or terminator. The string belongs to the
/// caller and must outlive the writer.
class StringWriter final : public TextWriter<IWriter> {
public:
    explicit StringWriter(String& target) : m_target(target) {}

    using TextWriter<IWriter>::write;
    /// Throws EStringWriter when `bytes` holds less than `count`.
    void write(Memory const& bytes, unsigned count) override;
    void reserve(unsigned count) override { m_target.reserve(count); }

protected:
    void put(char const* bytes, unsigned count) override { m_target.append(bytes, count); }

private:
    String& m_target;
};

} // namespace quillon
