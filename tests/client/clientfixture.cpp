#include "client/clientfixture.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace quillon::test {

ClientTest::ClientTest() {
    setenv("HOME", m_home.path().c_str(), 1);
    std::filesystem::create_directories(dataDirectory());
    writeFile(m_home.file(".Tarvik/tarvikclient.xml"), m_gateway.settings());
}

ClientTest::~ClientTest() {
    if (m_client) {
        m_client->stop();
        m_client->join();
    }
    m_client.reset();
    std::filesystem::current_path("/");
}

void ClientTest::makeClient() {
    m_client = std::make_unique<TarvikClient>(
        m_notify, m_consent, [this](String const& line) { m_audit.emplace_back(line.view()); });
    restartLog();
}

void ClientTest::restartLog() {
    m_log.reset(); // which gives the streams back, and so comes first
    m_log = std::make_unique<LogCapture>();
}

std::vector<std::string> ClientTest::runSession(String const& url) {
    if (!m_client)
        makeClient();
    m_client->run(url);
    m_client->join();
    return m_notify.lines();
}

void ClientTest::serveModule(std::string const& name) {
    m_gateway.serve("/modules/module.zip", signedArchive("module.so", readFile(testModule(name))));
}

std::vector<std::string> ClientTest::calls(std::string const& directory) const {
    std::istringstream text(readFile(String::copyOf(directory + "/calls.log")));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> ClientTest::filesAtHome() const {
    std::vector<std::string> files;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(m_home.path()))
        if (!entry.is_directory() && entry.path().filename() != ".tarvik-record")
            files.push_back(entry.path().lexically_relative(m_home.path()).string());
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace quillon::test
