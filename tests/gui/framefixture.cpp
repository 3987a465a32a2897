#include "gui/framefixture.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace quillon {

SilentListener::SilentListener() : m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(m_socket, generic, length) == 0 && listen(m_socket, 5) == 0 &&
        getsockname(m_socket, generic, &length) == 0)
        m_port = ntohs(address.sin_port);
}

SilentListener::~SilentListener() {
    close(m_socket);
}

bool SilentListener::hasCaller() const {
    pollfd waiting{m_socket, POLLIN, 0};
    return poll(&waiting, 1, 0) == 1;
}

FrameTest::FrameTest() {
    setenv("HOME", m_home.path().c_str(), 1);
    std::filesystem::create_directory(m_home.path() + "/.Tarvik");
}

FrameTest::~FrameTest() {
    if (frame)
        frame->Close(true);
    EXPECT_TRUE(goes());
    EXPECT_EQ(mainhiddenframe, nullptr);
    std::filesystem::current_path("/"); // the client had made the home's directory the current one
}

void FrameTest::makeFrame() {
    mainhiddenframe = new TarvikMainFrame(nullptr, wxID_ANY, "test");
    frame = mainhiddenframe;
}

void FrameTest::notify(ClientNotifyId id, int number, wxString const& text) {
    auto* const event = new wxThreadEvent(EVT_TYPE_CLIENTNOTIFY, id);
    event->SetInt(number);
    event->SetString(text);
    wxQueueEvent(frame, event);
}

} // namespace quillon
