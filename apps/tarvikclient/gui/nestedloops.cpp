#include "tarvikclient/gui/nestedloops.h"

#include "tarvikclient/gui/platform/nativedialog.h"
#include "tarvikclient/gui/platform/nativemenu.h"
#include "tarvikclient/gui/platform/toplevel.h"

#include <wx/dialog.h>

#include <algorithm>

namespace quillon {

wxMenu* MenuLoop::ms_menu = nullptr;

void MenuLoop::end() {
    if (ms_menu)
        endNativeMenu(*ms_menu);
}

void NestedLoops::endTop() {
    MenuLoop::end();
    if (m_open.empty())
        return;
    if (m_open.back()->IsModal())
        m_open.back()->EndModal(wxID_CANCEL);
    else
        endNativeDialog(*m_open.back());
}

void NestedLoops::raise() const {
    for (wxDialog* const dialog : m_open)
        dialog->Raise();
}

int NestedLoops::Enter(wxDialog* dialog) {
    if (m_refusing)
        return wxID_CANCEL;
    lockUpDialogsOnly(*dialog);
    m_open.push_back(dialog);
    if (m_onChange)
        m_onChange(true);
    return wxID_NONE;
}

void NestedLoops::Exit(wxDialog* dialog) {
    m_open.erase(std::remove(m_open.begin(), m_open.end(), dialog), m_open.end());
    if (m_onChange)
        m_onChange(!m_open.empty());
}

} // namespace quillon
