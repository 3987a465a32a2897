// A system tray for tests.
#pragma once

#include <memory>

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
    class Window;
    std::unique_ptr<Window> m_window;
};

} // namespace quillon::test
