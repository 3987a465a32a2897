// A system tray for tests.
#pragma once

struct _XDisplay;

namespace quillon::test {

/// Holds the display's tray as long as it lives, through an X connection of its own, and embeds the icons
/// that ask for it.
class TrayManager {
public:
    TrayManager();
    ~TrayManager();
    TrayManager(TrayManager const&) = delete;
    TrayManager& operator=(TrayManager const&) = delete;

    /// Takes in what has asked since the last call, and says whether an icon is there.
    bool hasIcon();
    /// Moves the pointer onto the icon.
    void pointAtIcon();

private:
    void announce();
    void embed(unsigned long icon);

    _XDisplay* m_display;
    unsigned long m_window;
    unsigned long m_icon = 0;
};

} // namespace quillon::test
