#include "e2e/site.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <sstream>
#include <thread>

namespace quillon::test {

Site::Site(std::vector<std::string> options, std::string const& script) {
    options.insert(options.begin(), {TEST_PROGRAMS "/tarvik-devgateway", "--port", "0"});
    if (!script.empty()) {
        writeFile(m_directory.file("script"), script);
        options.insert(options.end(), {"--poll-script", m_directory.path() + "/script"});
    }
    m_gateway = std::make_unique<ChildProcess>(options);
    EXPECT_TRUE(m_gateway->awaitOutput("refused tarvik://")) << m_gateway->errors();
    trust(authority());
}

std::string Site::authority() const {
    std::string const portal = url("portal");
    return portal.substr(8, portal.size() - 9);
}

std::string Site::url(std::string const& kind) const {
    std::istringstream lines(m_gateway->output());
    for (std::string name, url; lines >> name >> url;)
        if (name == kind)
            return url;
    return {};
}

std::size_t Site::requests(std::string const& path) const {
    std::string const log = m_gateway->errors();
    std::size_t count = 0;
    for (auto at = log.find(path); at != log.npos; at = log.find(path, at + 1))
        ++count;
    return count;
}

void Site::trust(std::string const& authority) const {
    std::filesystem::create_directories(home() + "/.Tarvik");
    std::filesystem::permissions(home() + "/.Tarvik", std::filesystem::perms(0755)); // see awaitClient()
    writeFile(String::copyOf(settingsPath()), "<tarvikclient><sslcertignoredomains><domains>" + authority +
                                                  "</domains></sslcertignoredomains></tarvikclient>");
}

std::string Site::moduleLog(std::string const& path) const {
    return readFile(String::copyOf(home() + "/.Tarvik/" + path));
}

bool Site::awaitClient() const {
    std::filesystem::path const directory = home() + "/.Tarvik";
    for (int i = 0; i < 3000; ++i) {
        if (std::filesystem::status(directory).permissions() == std::filesystem::perms::owner_all)
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

} // namespace quillon::test
