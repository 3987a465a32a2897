// The policy of a test program in place of the machine's.
#pragma once

#include "support/temporarydirectory.h"
#include "tarvikclient/policyplace.h"

namespace quillon::test {

/// A directory that holds the policy of this process for as long as the object lives; before and after there
/// is none. The file's owner is whoever runs the test. One at a time.
class TestPolicy {
public:
    TestPolicy();
    ~TestPolicy();

    /// Writes the policy: what stands in <policy>.
    void write(std::string const& rules);
    String path() const { return m_directory.file("policy.xml"); }
    PolicyPlace place() const;

private:
    TemporaryDirectory m_directory;
    String m_path = path();
};

} // namespace quillon::test
