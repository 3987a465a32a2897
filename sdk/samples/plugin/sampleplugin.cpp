// A plug-in that connects to nothing: it plays a script of status lines, one line per poll, and writes down
// in sample-plugin.log, in the plug-in directory, every call that it receives.
//
// The script comes from the gateway (/sample/poll-script); each of its lines is the JSON array that one poll
// returns, and polls after the last line return "[]".

#include "pollscript.h"

#include <tarvik/module.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <vector>

namespace {

char const nothingNew[] = "[]";

/// The seven fields of a proxy text with the password masked; where a "|" inside a value makes the fields
/// ambiguous, everything between the host and the last field is.
std::string withoutPassword(std::string const& proxy) {
    std::vector<std::string> fields;
    std::istringstream stream(proxy);
    for (std::string field; std::getline(stream, field, '|');)
        fields.push_back(field);
    bool const ambiguous = fields.size() != 7;
    std::string masked;
    for (size_t i = 0; i < fields.size(); ++i) {
        bool const secret = ambiguous ? i > 2 && i + 1 < fields.size() : i == 4;
        masked += (i == 0 ? "" : "|") + (secret && !fields[i].empty() ? "***" : fields[i]);
    }
    return masked;
}

class SamplePlugin {
public:
    /// Remembers a setting under the name of its setter and logs the call with "shown" for the value.
    void set(std::string const& name, std::string const& value, std::string const& shown) {
        m_settings[name] = value;
        log(name + " " + shown);
    }

    void set(std::string const& name, std::string const& value) { set(name, value, value); }

    bool wasGiven(std::string const& name, std::string const& value) const {
        auto const setting = m_settings.find(name);
        return setting != m_settings.end() && setting->second == value;
    }

    void setDelegate(TarvikDownloadDelegate delegate) { m_delegate = delegate; }

    /// Lines from before the plug-in directory is known are kept until it is.
    void log(std::string const& line) {
        m_log += line + "\n";
        std::string const directory = m_settings["DllSetPluginDir2"];
        if (directory.empty())
            return;
        std::ofstream file(directory + "/sample-plugin.log", std::ios::app);
        file << m_log.substr(m_logWritten);
        m_logWritten = m_log.size();
    }

    std::string const& logText() const { return m_log; }

    void start() {
        std::string url = "/sample/poll-script";
        std::string path = m_settings["DllSetPluginDir2"] + "/poll-script.txt";
        if (m_delegate && m_delegate(url.data(), path.data())) {
            std::ifstream file(path);
            readScript(file);
        } else {
            std::istringstream text(samplePollScript);
            readScript(text);
        }
    }

    std::string poll() { return m_nextPoll < m_polls.size() ? m_polls[m_nextPoll++] : nothingNew; }

private:
    void readScript(std::istream& script) {
        m_polls.clear();
        m_nextPoll = 0;
        for (std::string line; std::getline(script, line);)
            m_polls.push_back(line.empty() ? nothingNew : line);
    }

    std::map<std::string, std::string> m_settings;
    TarvikDownloadDelegate m_delegate = nullptr;
    std::vector<std::string> m_polls;
    size_t m_nextPoll = 0;
    std::string m_log;
    size_t m_logWritten = 0;
};

/// The one instance. Held here, and not by the handle alone, because a session without a tunnel unloads the
/// module without DllStop2: the instance is then freed with the library.
std::unique_ptr<SamplePlugin> theInstance;

SamplePlugin& plugin(void* instance) {
    return *static_cast<SamplePlugin*>(instance);
}

/// A copy that DllReleaseStr can free.
char* released(std::string const& text) {
    return strdup(text.c_str());
}

} // namespace

void* DllCreatePluginFrontal() noexcept {
    theInstance.reset(new (std::nothrow) SamplePlugin);
    if (theInstance)
        theInstance->log(__func__);
    return theInstance.get();
}

void DllSetDllVersion2(void* instance, char const* version) noexcept {
    plugin(instance).set(__func__, version);
}

void DllSetPluginDir2(void* instance, char const* directory) noexcept {
    plugin(instance).set(__func__, directory);
}

void DllSetLogin2(void* instance, char const* login) noexcept {
    plugin(instance).set(__func__, login);
}

void DllSetOrganization2(void* instance, char const* organization) noexcept {
    plugin(instance).set(__func__, organization);
}

void DllSetHostname2(void* instance, char const* hostname) noexcept {
    plugin(instance).set(__func__, hostname);
}

void DllSetServer2(void* instance, char const* server) noexcept {
    plugin(instance).set(__func__, server);
}

void DllSetSuffix2(void* instance, char const* suffix) noexcept {
    plugin(instance).set(__func__, suffix);
}

void DllSetTicket2(void* instance, char const* ticket) noexcept {
    plugin(instance).set(__func__, ticket, "***");
}

void DllSetSessionId2(void* instance, char const* sessionId) noexcept {
    plugin(instance).set(__func__, sessionId, "***");
}

void DllSetCertDirectory2(void* instance, char const* directory) noexcept {
    plugin(instance).set(__func__, directory);
}

void DllSetCertFileName2(void* instance, char const* fileName) noexcept {
    plugin(instance).set(__func__, fileName);
}

void DllSetCaFileName2(void* instance, char const* fileName) noexcept {
    plugin(instance).set(__func__, fileName);
}

void DllSetCertPassword2(void* instance, char const* password) noexcept {
    plugin(instance).set(__func__, password, "***");
}

void DllSetDownloadDelegate2(void* instance, TarvikDownloadDelegate delegate) noexcept {
    plugin(instance).log(__func__);
    plugin(instance).setDelegate(delegate);
}

void DllSetProxy2(void* instance, char const* proxy) noexcept {
    plugin(instance).set(__func__, proxy, withoutPassword(proxy));
}

char* DllGetLogs2(void* instance) noexcept {
    plugin(instance).log(__func__);
    return released(plugin(instance).logText());
}

/// This module's one command is "given": 1 when the setter named "second" was last called with "third".
int DllExecute2(void* instance, char const* first, char const* second, char const* third) noexcept {
    plugin(instance).log(std::string(__func__) + " " + first + " " + second + " ***");
    return std::strcmp(first, "given") == 0 && plugin(instance).wasGiven(second, third) ? 1 : 0;
}

char* DllGetErrors2(void* instance) noexcept {
    std::string const news = plugin(instance).poll();
    if (news != nothingNew)
        plugin(instance).log(std::string(__func__) + " " + news);
    return released(news);
}

void DllStart2(void* instance) noexcept {
    plugin(instance).log(__func__);
    plugin(instance).start();
}

void DllStop2(void* instance) noexcept {
    plugin(instance).log(__func__);
    theInstance.reset();
}

/// Logged like the poll that it belongs to: an uneventful one is not.
void DllReleaseStr(char* text) noexcept {
    if (theInstance && std::strcmp(text, nothingNew) != 0)
        theInstance->log(__func__);
    std::free(text);
}

int LaunchSafeResource(void* instance, int id, char const* text) noexcept {
    plugin(instance).log(std::string(__func__) + " " + std::to_string(id) + " " + text);
    return 0;
}
