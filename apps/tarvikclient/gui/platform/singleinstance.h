// One running client per user.
#pragma once

#include "base/string.h"

#include <chrono>
#include <functional>
#include <memory>

namespace quillon {

/// Decides which of several processes of a user is the one that runs, and takes the others' launch URLs to
/// it. One thread, the interface's.
class SingleInstance {
public:
    enum class Role {
        first,  ///< this process runs; the others' URLs come to it
        second, ///< another process runs and has been handed the URL
        unheard ///< another process has the place and has not taken the URL
    };
    using UrlHandler = std::function<void(String const&)>;

    /// Longer than a process takes that is about to end (Quitting's times, and what ClientHolder gives the
    /// session after them), so that its successor gets the place.
    static constexpr std::chrono::milliseconds defaultPatience{20000};
    /// The longest URL that can be handed over, in bytes.
    static constexpr unsigned maxUrl = 64 * 1024;

    SingleInstance();
    ~SingleInstance();
    SingleInstance(SingleInstance const&) = delete;
    SingleInstance& operator=(SingleInstance const&) = delete;

    /// Claims the place, or hands `url` (which may be empty: the program was started without one) to the
    /// process that has it. Any number of processes may do so at the same moment: one becomes the first.
    /// Where no place can be had, for instance because what stands there is another user's, each process runs
    /// on its own: the role is `first`, and no URLs come. Waits at most `patience` for another process. To be
    /// called once. Needs no toolkit and no display.
    Role claim(String const& url, std::chrono::milliseconds patience = defaultPatience);
    /// From now on calls `onUrl` with each URL that another process hands over, an empty one when it was
    /// started without; an empty function ends that
    /// and keeps the place. Needs the toolkit's event loop, and must have been ended before that goes.
    void listen(UrlHandler onUrl);
    /// One round of what listen() does, for a program without that loop: calls `onUrl` with the URLs that
    /// have come, having waited at most `wait` for something to come.
    void receive(UrlHandler const& onUrl, std::chrono::milliseconds wait);

private:
    class Endpoint;
    std::unique_ptr<Endpoint> m_endpoint;
};

} // namespace quillon
