#include "tarvikclient/modulemanifest.h"

#include "base/base64.h"
#include "base/failure.h"
#include "base/splitter.h"
#include "base/stringconversion.h"
#include "tarvikclient/dllinfos.h"
#include "tarvikclient/moduleplatform.h"
#include "xml/cursor.h"

#include <algorithm>
#include <set>

namespace quillon {

namespace {

constexpr std::size_t sha256Length = 32;

constexpr char logClass[] = "ModuleManifest";

void readOnly(IKeyReader& reader, char const* key, String& value) {
    if (reader.size(key) != 1)
        fail<EModuleManifest>(logClass, "write", String("there must be one ") + key);
    reader[key].read(value);
}

/// Lenient decoding has many texts for the same bytes; a record has one.
bool isDigest(String const& text) {
    Memory const bytes = Base64::decode(text);
    return bytes.size() == sha256Length && Base64::encode(bytes) == text;
}

bool isPlainAscii(String const& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; }) &&
           text.findFirstOf("<>&\"'\\", 0) == String::npos;
}

bool isFileName(String const& name) {
    if (name.length() > ModuleManifest::maxNameLength || !isPlainAscii(name))
        return false;
    for (CharSplitter components(name, '/'); components.valid();)
        if (String const component = components.next(); component.empty() || component.ends('.'))
            return false;
    return true;
}

void appendNetstring(String& bytes, String const& text) {
    bytes.append(toString(text.length()), ':', text, ',');
}

} // namespace

void ModuleCompanion::write(IKeyReader& reader) {
    readOnly(reader, "name", name);
    readOnly(reader, "sha256", sha256);
}

void ModuleCompanion::read(IKeyWriter& writer) const {
    writer["name"].write(name);
    writer["sha256"].write(sha256);
}

bool ModuleManifest::isKind(String const& text) {
    return text == plugin || text == hostchecker;
}

bool ModuleManifest::isPlatform(String const& text) {
    return text == "linux-x86_64" || text == "macos-x86_64";
}

void ModuleManifest::write(IKeyReader& reader) {
    readOnly(reader, "kind", kind);
    readOnly(reader, "platform", platform);
    companions.clear();
    for (unsigned left = reader.size("companion"); left > 0; --left)
        reader["companion"].read(companions.emplace_back());
    check();
}

void ModuleManifest::read(IKeyWriter& writer) const {
    writer["kind"].write(kind);
    writer["platform"].write(platform);
    for (ModuleCompanion const& companion : companions)
        writer["companion"].write(companion);
}

void ModuleManifest::check() const {
    if (!isKind(kind) || !isPlatform(platform))
        fail<EModuleManifest>(logClass, "check",
                              "unknown kind or platform: " + xml::excerpt(kind) + ", " +
                                  xml::excerpt(platform));
    if (companions.size() > maxCompanions)
        fail<EModuleManifest>(logClass, "check", "too many companions");
    std::set<String> names;
    for (ModuleCompanion const& companion : companions) {
        if (!isFileName(companion.name) || !names.insert(companion.name.lower()).second)
            fail<EModuleManifest>(logClass, "check",
                                  "unsafe or repeated companion: " + xml::excerpt(companion.name));
        if (!isDigest(companion.sha256))
            fail<EModuleManifest>(logClass, "check", "bad digest of companion: " + companion.name);
    }
}

bool ModuleManifest::suits(String const& wantedKind, String const& fileName) const {
    if (kind == wantedKind && platform == modulePlatform() && leavesPlaceFor(fileName))
        return true;
    log(ERROR, "ModuleManifest", "suits",
        fileName + ", a " + kind + " for " + platform + ", is no " + wantedKind + " for " + modulePlatform() +
            ", or a companion has its name");
    return false;
}

bool ModuleManifest::leavesPlaceFor(String const& fileName) const {
    return std::none_of(companions.begin(), companions.end(), [&](ModuleCompanion const& companion) {
        String const top = companion.name.left('/');
        return top.equalsNoCase2(fileName) || top.equalsNoCase2(fileName + DllInfos::fileSuffix);
    });
}

String ModuleManifest::signedBytes(DllInfos const& module) const {
    String bytes;
    for (String const* const text :
         {&module.version, &module.name, &module.signdate, &module.sha256, &kind, &platform})
        appendNetstring(bytes, *text);
    appendNetstring(bytes, toString(companions.size()));
    for (ModuleCompanion const& companion : companions) {
        appendNetstring(bytes, companion.name);
        appendNetstring(bytes, companion.sha256);
    }
    return bytes;
}

} // namespace quillon
