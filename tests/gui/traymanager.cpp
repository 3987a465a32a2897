#include "gui/traymanager.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <stdexcept>

namespace quillon::test {

namespace {

constexpr int side = 24;
constexpr int requestDock = 0;

} // namespace

class TrayManager::Window {
public:
    Window() : m_display(XOpenDisplay(nullptr)) {
        if (!m_display)
            throw std::runtime_error("no display");
        Atom const selection = XInternAtom(m_display, "_NET_SYSTEM_TRAY_S0", False);
        ::Window const root = DefaultRootWindow(m_display);
        m_window = XCreateSimpleWindow(m_display, root, 0, 0, side, side, 0, 0, 0xffffff);
        XSelectInput(m_display, m_window, SubstructureNotifyMask);
        XMapWindow(m_display, m_window);
        XSetSelectionOwner(m_display, selection, m_window, CurrentTime);
        announce(root, selection);
        XSync(m_display, False);
    }
    // The server gives the icon's window back to the root and frees the selection.
    ~Window() { XCloseDisplay(m_display); }
    Window(Window const&) = delete;
    Window& operator=(Window const&) = delete;

    bool hasIcon() {
        while (XPending(m_display) > 0) {
            XEvent event;
            XNextEvent(m_display, &event);
            if (event.type == ClientMessage && event.xclient.data.l[1] == requestDock)
                embed(static_cast<::Window>(event.xclient.data.l[2]));
            else if (event.type == DestroyNotify && event.xdestroywindow.window == m_icon)
                m_icon = None;
        }
        return m_icon != None;
    }
    void pointAtIcon() {
        XWarpPointer(m_display, None, m_window, 0, 0, 0, 0, side / 2, side / 2);
        XSync(m_display, False);
    }

private:
    void announce(::Window root, Atom selection) {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = root;
        event.xclient.message_type = XInternAtom(m_display, "MANAGER", False);
        event.xclient.format = 32;
        event.xclient.data.l[1] = static_cast<long>(selection);
        event.xclient.data.l[2] = static_cast<long>(m_window);
        XSendEvent(m_display, root, False, StructureNotifyMask, &event);
    }

    void embed(::Window icon) {
        m_icon = icon;
        XAddToSaveSet(m_display, icon);
        XReparentWindow(m_display, icon, m_window, 0, 0);
        XResizeWindow(m_display, icon, side, side);
        XMapWindow(m_display, icon);
        XSync(m_display, False);
    }

    Display* m_display;
    ::Window m_window = None;
    ::Window m_icon = None;
};

TrayManager::TrayManager() : m_window(std::make_unique<Window>()) {}

TrayManager::~TrayManager() = default;

bool TrayManager::hasIcon() {
    return m_window->hasIcon();
}

void TrayManager::pointAtIcon() {
    m_window->pointAtIcon();
}

} // namespace quillon::test
