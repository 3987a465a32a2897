// A menu on the session bus.
#pragma once

#include <memory>
#include <string>

class wxEvtHandler;
class wxMenu;

namespace quillon {

/// A menu in the form of com.canonical.dbusmenu, which the desktop shows as its own. Interface thread only.
class MenuOnBus {
public:
    /// Copies `menu`, without submenus, to the object `path`. What is chosen is queued for `target`, which
    /// must outlive this object, as wxEVT_MENU.
    MenuOnBus(std::string const& path, wxMenu const& menu, wxEvtHandler& target);
    ~MenuOnBus();
    MenuOnBus(MenuOnBus const&) = delete;
    MenuOnBus& operator=(MenuOnBus const&) = delete;

private:
    class Native;
    std::unique_ptr<Native> m_native;
};

} // namespace quillon
