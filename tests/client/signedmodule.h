// Signed modules and the archives that deliver them.
#pragma once

#include "support/temporarydirectory.h"

#include <map>
#include <string>

namespace quillon::test {

/// The path of a module that the build made for the tests.
String testModule(std::string const& name);

/// The signature file of a module's content, signed with the key that this build of the client trusts.
std::string signatureOf(std::string const& content);

/// A ZIP archive of entries, names to contents.
std::string zipOf(std::map<std::string, std::string> const& entries);

/// An archive that holds `content` as `pattern` and its signature beside it.
std::string signedArchive(std::string const& pattern, std::string const& content);

} // namespace quillon::test
