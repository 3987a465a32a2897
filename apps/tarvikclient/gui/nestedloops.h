// Event loops that run inside an event handler.
#pragma once

#include <wx/modalhook.h>

#include <functional>
#include <vector>

class wxMenu;

namespace quillon {

/// Held around PopupMenu(), which returns only when the menu has been closed: meanwhile no window may be
/// destroyed that a handler further down works on. One at a time. Interface thread only.
class MenuLoop {
public:
    explicit MenuLoop(wxMenu& menu) { ms_menu = &menu; }
    ~MenuLoop() { ms_menu = nullptr; }
    MenuLoop(MenuLoop const&) = delete;
    MenuLoop& operator=(MenuLoop const&) = delete;

    static bool isRunning() { return ms_menu != nullptr; }
    /// Closes the menu as if nothing had been chosen from it; its loop ends once its caller runs again.
    static void end();

private:
    static wxMenu* ms_menu;
};

/// Knows the modal dialogs that are open, whoever opened them. wxWidgets deletes windows in the idle time of
/// any loop, those of modal dialogs included: whoever closes a window that has handlers further down must
/// wait until no loop is nested any more. Interface thread only.
class NestedLoops : private wxModalDialogHook {
public:
    NestedLoops() { Register(); }

    bool any() const { return !m_open.empty() || MenuLoop::isRunning(); }
    /// Closes the menu, and ends the dialog on top as if it had been cancelled. Those below follow by further
    /// calls, each when the one above it has returned: a dialog whose event loop is not the running one
    /// cannot be ended, and would stay there for ever, hidden.
    void endTop();
    /// From now on a modal dialog is not shown but returns wxID_CANCEL at once.
    void refuse() { m_refusing = true; }

    /// `onChange` is called whenever a dialog is about to open, and when one has closed, with whether any is
    /// open then.
    void watch(std::function<void(bool open)> onChange) { m_onChange = std::move(onChange); }
    /// Brings the dialogs that are open before the program's other windows.
    void raise() const;

    /// The open dialog of a class, or null.
    template <class Dialog>
    Dialog* find() const {
        for (wxDialog* const dialog : m_open)
            if (auto* const found = dynamic_cast<Dialog*>(dialog))
                return found;
        return nullptr;
    }

private:
    int Enter(wxDialog* dialog) override;
    void Exit(wxDialog* dialog) override;

    std::vector<wxDialog*> m_open; // the one on top last
    std::function<void(bool open)> m_onChange;
    bool m_refusing = false;
};

} // namespace quillon
