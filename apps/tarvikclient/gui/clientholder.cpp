#include "tarvikclient/gui/clientholder.h"

#include "base/log.h"

namespace quillon {

namespace {

constexpr unsigned long lastInstructionsMs = 5000;

} // namespace

void NotifyRelay::close() {
    TSynchronize<Mutex> lock(m_mutex);
    m_closed = true;
    m_target = nullptr;
}

void NotifyRelay::QueueEvent(wxEvent* event) {
    TSynchronize<Mutex> lock(m_mutex);
    // wxWidgets itself may be gone when a thread that was left behind comes here.
    if (m_closed)
        delete event;
    else
        wxEvtHandler::QueueEvent(event);
}

bool NotifyRelay::ProcessEvent(wxEvent& event) {
    return m_target && m_target->ProcessEvent(event);
}

ClientHolder::ClientHolder(wxEvtHandler& target) : m_parts(std::make_unique<Parts>(target)) {}

ClientHolder::~ClientHolder() {
    m_parts->relay.close();
    TarvikClient& client = m_parts->client;
    if (!client.isRunning())
        return;
    client.cancel();
    if (client.join(m_waitMs))
        return;
    log(ERROR, "ClientHolder", "~ClientHolder", "The client's thread does not end and is left behind");
    static_cast<void>(m_parts.release()); // what the thread uses is never freed
}

bool ClientHolder::run(String const& url) {
    return m_parts->client.join(lastInstructionsMs) && m_parts->client.run(url);
}

bool ClientHolder::restart() {
    if (!m_parts->client.join(lastInstructionsMs))
        return false;
    m_parts->client.restart();
    return true;
}

} // namespace quillon
