// The base of every exception of the system.
#pragma once

#include "base/string.h"

#include <exception>

namespace quillon {

/// A failure: the exception's class name, the place that threw, and a code. The readable reason has been
/// logged before the throw, by fail(). Each subclass is named "E" and the component's name and has the same
/// two constructors.
class Exception : public std::exception {
public:
    /// `file` is cut to its last path component.
    Exception(String const& name, String const& file, int line) : Exception(0, name, file, line) {}
    Exception(int code, String const& name, String const& file, int line);

    int getErrorCode() const noexcept { return m_code; }
    String const& getName() const noexcept { return m_name; }

    /// "name:file:line", and "(code)" behind it when there is one.
    String toString() const;
    /// toString() as a C string, for handlers that know no more than std::exception.
    char const* what() const noexcept override { return m_what.array(); }
    /// toString(), " -> " and the place that caught the exception.
    String trace(String const& file, int line) const;

private:
    String m_name;
    String m_file;
    int m_line;
    int m_code;
    String m_what; // ends in a NUL
};

/// Thrown when an empty shared pointer is dereferenced.
class NullException : public Exception {
    using Exception::Exception;
};

/// Thrown by an operation that a class inherits and does not support.
class ENotImplemented : public Exception {
    using Exception::Exception;
};

/// Thrown when a container is asked for an item that it does not hold.
class EBadItem : public Exception {
    using Exception::Exception;
};

} // namespace quillon
