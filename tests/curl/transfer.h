// A transfer that is cut off from another thread.
#pragma once

#include "trustingsession.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>

namespace quillon::test {

/// A GET on a thread of its own.
class Transfer {
public:
    Transfer(CurlSession& session, String const& url)
        : m_session(session), m_code(std::async(std::launch::async, [&session, url = url.clone()] {
              Memory body;
              RequestInfo info;
              session.request(url, body, info);
              return info.getCode();
          })) {}

    /// Cancels the session once the transfer has come to its wait, and expects that to end it.
    void expectCutOff() {
        using namespace std::chrono;
        EXPECT_EQ(m_code.wait_for(milliseconds(300)), std::future_status::timeout) << "it does not wait";
        auto const start = steady_clock::now();
        m_session.cancel();
        EXPECT_EQ(getCode(), 42);
        // About a second is promised; without cancelling it would take 30 s or more.
        EXPECT_LT(steady_clock::now() - start, seconds(3));
    }
    /// Waits for the end.
    int getCode() { return m_code.get(); }

private:
    CurlSession& m_session;
    std::future<int> m_code;
};

} // namespace quillon::test
