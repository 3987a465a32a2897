// The client, with all that its thread uses.
#pragma once

#include "base/mutex.h"
#include "tarvikclient/client.h"
#include "tarvikclient/gui/clientconsent.h"
#include "tarvikclient/gui/clientwxevent.h"

#include <memory>

namespace quillon {

/// Takes the client's events to a window for as long as there is one. It outlives the client's thread,
/// which the window need not.
class NotifyRelay final : public wxEvtHandler {
public:
    explicit NotifyRelay(wxEvtHandler& target) : m_target(&target) {}

    /// From now on events vanish, and those on the way too. Interface thread.
    void close();

    /// Any thread.
    void QueueEvent(wxEvent* event) override;
    /// Interface thread.
    bool ProcessEvent(wxEvent& event) override;

private:
    Mutex m_mutex;
    bool m_closed = false; // under the mutex
    wxEvtHandler* m_target;
};

/// Owns the client and ends its thread before it goes: a thread that does not end in time keeps the client,
/// which is then never destroyed. Interface thread only.
class ClientHolder {
public:
    /// `target` receives the notifications' and the questions' events until this object is destroyed. Throws
    /// what the client's constructor throws.
    explicit ClientHolder(wxEvtHandler& target);
    /// Cuts off a session that is still running and waits some seconds for its end.
    ~ClientHolder();
    ClientHolder(ClientHolder const&) = delete;
    ClientHolder& operator=(ClientHolder const&) = delete;

    TarvikClient* operator->() { return &m_parts->client; }
    /// Starts a session. The thread of one that has just said why it failed is given the time to end first,
    /// without which nothing would be started. False when it did not.
    bool run(String const& url);
    /// The same with the last session's URL.
    bool restart();
    /// The session has had its time: the destructor does not wait for it any more.
    void giveUp() { m_waitMs = 0; }

private:
    struct Parts {
        explicit Parts(wxEvtHandler& target) : relay(target) {}

        NotifyRelay relay;
        TarvikClientGuiNotifyHandler notifyHandler{&relay};
        TarvikClientGuiConsent consent{&relay};
        TarvikClient client{notifyHandler, &consent};
    };

    std::unique_ptr<Parts> m_parts;
    unsigned long m_waitMs = 3000;
};

} // namespace quillon
