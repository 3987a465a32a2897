#include "tarvikclient/logplace.h"

#include "base/console.h"
#include "base/file.h"

#include <cstdio>

namespace quillon {

namespace {

constexpr char name[] = "tarvikclient.log";

} // namespace

String logTo(String const& path) {
    String refusal;
    for (LogCategory const category : {TRACE, ERROR, ASSERT, DEBUG})
        console->setStream(category, path, &refusal);
    if (!refusal.empty()) // a part of the lines would be worse than none
        for (LogCategory const category : {TRACE, ERROR, ASSERT, DEBUG})
            console->setStream(category, "null");
    return refusal;
}

String logInDataDirectory(String const& directory) {
    return directory.trimRight('/') + "/" + name;
}

void logToDataDirectory(String const& directory, String const& refused, String const& reason) {
    File::ensureDirectory(directory);
    String const path = logInDataDirectory(directory);
    String const refusal = logTo(path);
    String const text = "Can not log to " + refused + ": " + reason +
                        (refusal.empty() ? "; the log is " + path : ", nor to " + path + ": " + refusal);
    std::fprintf(stderr, "tarvikclient: %s\n", text.str());
    log(ERROR, "TarvikClient", "TarvikClient", text);
}

} // namespace quillon
