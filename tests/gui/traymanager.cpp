#include "gui/traymanager.h"

#include <X11/Xlib.h>

namespace quillon::test {

namespace {

constexpr int side = 24;
constexpr int left = 600; // beside what the window system puts into the corner
constexpr int requestDock = 0;

} // namespace

TrayManager::TrayManager()
    : m_display(XOpenDisplay(nullptr)),
      m_window(XCreateSimpleWindow(m_display, DefaultRootWindow(m_display), left, 0, side, side, 0, 0, 0)) {
    XSelectInput(m_display, m_window, SubstructureNotifyMask);
    XMapWindow(m_display, m_window);
    announce();
}

// The server gives the icon's window back to the root and frees the selection.
TrayManager::~TrayManager() {
    XCloseDisplay(m_display);
}

void TrayManager::announce() {
    Atom const selection = XInternAtom(m_display, "_NET_SYSTEM_TRAY_S0", False);
    XSetSelectionOwner(m_display, selection, m_window, CurrentTime);
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = DefaultRootWindow(m_display);
    event.xclient.message_type = XInternAtom(m_display, "MANAGER", False);
    event.xclient.format = 32;
    event.xclient.data.l[1] = static_cast<long>(selection);
    event.xclient.data.l[2] = static_cast<long>(m_window);
    XSendEvent(m_display, event.xclient.window, False, StructureNotifyMask, &event);
    XSync(m_display, False);
}

bool TrayManager::hasIcon() {
    while (XPending(m_display) > 0) {
        XEvent event;
        XNextEvent(m_display, &event);
        if (event.type == ClientMessage && event.xclient.data.l[1] == requestDock)
            embed(static_cast<Window>(event.xclient.data.l[2]));
        else if (event.type == DestroyNotify && event.xdestroywindow.window == m_icon)
            m_icon = None;
    }
    return m_icon != None;
}

void TrayManager::embed(Window icon) {
    m_icon = icon;
    XAddToSaveSet(m_display, icon);
    XReparentWindow(m_display, icon, m_window, 0, 0);
    XResizeWindow(m_display, icon, side, side);
    XMapWindow(m_display, icon);
    XSync(m_display, False);
}

void TrayManager::pointAtIcon() {
    XWarpPointer(m_display, None, m_window, 0, 0, 0, 0, side / 2, side / 2);
    XSync(m_display, False);
}

} // namespace quillon::test
