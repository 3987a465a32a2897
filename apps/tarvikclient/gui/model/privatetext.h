// What of a log may leave the machine.
#pragma once

#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace quillon {

/// By what a text tells whose it is.
struct Person {
    std::vector<std::string> names; ///< of the user's account
    std::vector<std::string> homes; ///< absolute paths of the user's home directory
    std::vector<std::string> hosts; ///< the gateway's, without the port

    /// The user of this process, and the host of `gateway`, which may have a port and may be empty. The
    /// administrator's account is nobody's name.
    static Person current(std::string const& gateway);
};

/// The lines with what tells of the user taken out of each: a home directory becomes "~", a name that stands
/// as a word of its own, in whatever letters, "<user>", an IP address, the host
/// of a URL or the gateway's "<address>". What
/// stands for a ticket or a password becomes "***": the user-info of URLs, and the value behind a key that
/// says so, as in "Tarvik-Id=...", "Cookie: ...",
/// "\"password\": \"...\"" or "<password>...". Bytes that are no UTF-8 stay. Any thread.
std::string privateText(std::string_view text, Person const& person);

/// Writes the lines of one file, each as privateText() has it, to another one, which is replaced; paths in
/// the file system's encoding. An error when that fails, or when both are the same file, which then stays.
std::error_code copyPrivately(std::string const& from, std::string const& to, Person const& person);

} // namespace quillon
