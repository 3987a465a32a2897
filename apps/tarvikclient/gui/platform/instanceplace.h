// The place of the running client: whoever has it is the one that runs.
#pragma once

#include "base/descriptor.h"

#include <sys/un.h>

#include <string>

namespace quillon::instance {

/// A lock file and a socket beside it, in a directory that nobody but the user can enter. The lock alone
/// decides who has the place, and goes with the process however that ends; the socket carries URLs to it.
/// There is one place for each user and data directory. One object per process, because a process's locks
/// do not exclude each other; one thread, the interface's.
class Place {
public:
    enum class Claim {
        held,     ///< by this process, which listens
        occupied, ///< by another process
        none      ///< no place can be had: what stands there is not the user's, for instance; logged
    };

    Place() = default;
    /// Gives up what this process holds.
    ~Place();
    Place(Place const&) = delete;
    Place& operator=(Place const&) = delete;

    /// Takes the place if it is free. May be called again after `occupied`.
    Claim claim();
    /// The listening socket, after `held`.
    Descriptor const& listener() const noexcept { return m_listener; }
    /// Where the other process listens, after `occupied`; valid as long as this object.
    sockaddr_un address() const;

private:
    bool open();
    bool listen();

    std::string m_name; // of the files, without what tells them apart
    Descriptor m_directory;
    Descriptor m_lock;
    Descriptor m_listener;
};

} // namespace quillon::instance
