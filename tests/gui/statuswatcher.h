// A session bus of the test's own, and on it a desktop's side of StatusNotifierItems.
#pragma once

#include "support/temporarydirectory.h"

#include <memory>
#include <string>
#include <vector>

namespace quillon::test {

/// A bus daemon that starts no services. From its construction on it is the process's session bus; there can
/// be one in a process, because GLib keeps its connection.
class SessionBus {
public:
    SessionBus();
    ~SessionBus();
    SessionBus(SessionBus const&) = delete;
    SessionBus& operator=(SessionBus const&) = delete;

    std::string const& address() const { return m_address; }
    /// Stops the daemon's process without ending it, or lets it go on: a bus that hangs.
    void freeze(bool frozen);
    void end();

private:
    TemporaryDirectory m_directory;
    std::string m_address;
    int m_process = 0;
};

/// Owns the watcher's name as long as it lives, and looks at the last item that was registered as a host
/// would, through a connection of its own. The operations run the application's events until the item has
/// answered; they throw std::runtime_error when it does not.
class StatusWatcher {
public:
    explicit StatusWatcher(SessionBus const& bus);
    ~StatusWatcher();
    StatusWatcher(StatusWatcher const&) = delete;
    StatusWatcher& operator=(StatusWatcher const&) = delete;

    bool hasItem() const;
    /// A property of the item, as text.
    std::string property(std::string const& name);
    /// The labels of the item's menu without their mnemonics; "-" for a separator.
    std::vector<std::string> labels();
    /// Chooses an entry, as a host does when it is clicked.
    void click(std::string const& label);

private:
    class Host;
    std::unique_ptr<Host> m_host;
};

/// The desktop's notification service. As long as it lives; keeps what it was told.
class NotificationService {
public:
    struct Message {
        unsigned replaces; ///< number of the message that this one takes the place of, or 0
        std::string title;
        std::string text;
    };

    explicit NotificationService(SessionBus const& bus);
    ~NotificationService();
    NotificationService(NotificationService const&) = delete;
    NotificationService& operator=(NotificationService const&) = delete;

    /// What has come so far; messages are numbered from 1 on.
    std::vector<Message> const& messages() const;

private:
    class Daemon;
    std::unique_ptr<Daemon> m_daemon;
};

} // namespace quillon::test
