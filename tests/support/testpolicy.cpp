#include "support/testpolicy.h"

#include <sys/stat.h>
#include <unistd.h>

#include <atomic>

namespace quillon {

namespace {

std::atomic<char const*> g_path{"/nonexistent/policy.xml"};

} // namespace

PolicyPlace policyPlace() {
    return {g_path, geteuid()};
}

namespace test {

TestPolicy::TestPolicy() {
    g_path = m_path.str();
}

TestPolicy::~TestPolicy() {
    g_path = "/nonexistent/policy.xml";
}

void TestPolicy::write(std::string const& rules) {
    writeFile(m_path, "<policy>" + rules + "</policy>");
    chmod(m_path.str(), 0644);
}

PolicyPlace TestPolicy::place() const {
    return policyPlace();
}

} // namespace test

} // namespace quillon
