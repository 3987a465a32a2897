#include "support/logcapture.h"

#include "base/console.h"

#include <sstream>

namespace quillon::test {

namespace {

constexpr LogCategory categories[] = {TRACE, DEBUG, ERROR, ASSERT};
constexpr unsigned drainMs = 10000;

} // namespace

LogCapture::LogCapture() : m_file(m_directory.file("log")) {
    // Lines of an earlier test still queued belong to that test.
    Console::instance()->drain(drainMs);
    for (LogCategory const category : categories)
        Console::instance()->setStream(category, m_file);
}

LogCapture::~LogCapture() {
    Console::instance()->drain(drainMs);
    for (LogCategory const category : categories)
        Console::instance()->setStream(category, "stdout");
}

std::string LogCapture::text() const {
    Console::instance()->drain(drainMs);
    return readFile(m_file);
}

std::vector<std::string> LogCapture::lines() const {
    std::istringstream all(text());
    std::vector<std::string> lines;
    for (std::string line; std::getline(all, line);)
        lines.push_back(line);
    return lines;
}

std::size_t LogCapture::count(std::string_view part) const {
    std::string const all = text();
    std::size_t found = 0;
    for (std::size_t at = all.find(part); at != std::string::npos; at = all.find(part, at + part.size()))
        ++found;
    return found;
}

} // namespace quillon::test
