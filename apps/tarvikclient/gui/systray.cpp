#include "tarvikclient/gui/systray.h"

#include "tarvikclient/gui/menucommands.h"
#include "tarvikclient/gui/model/menuentries.h"
#include "tarvikclient/gui/nestedloops.h"
#include "tarvikclient/gui/platform/nativemenu.h"
#include "tarvikclient/gui/platform/tray.h"

#include <wx/artprov.h>
#include <wx/intl.h>
#include <wx/menu.h>
#include <wx/stockitem.h>

#include <memory>

namespace quillon {

namespace {

void append(wxMenu& menu, MenuEntry const& entry) {
    wxString label = entry.key ? wxGetTranslation(entry.key) : wxString();
    // Left empty, the label would show keys too, which do nothing here.
    if (wxIsStockID(entry.id))
        label = wxGetStockLabel(entry.id, wxSTOCK_WITH_MNEMONIC);
    auto item = std::make_unique<wxMenuItem>(&menu, entry.id, label);
    if (entry.art)
        if (wxBitmap const picture = wxArtProvider::GetBitmap(entry.art, wxART_OTHER); picture.IsOk())
            item->SetBitmap(picture);
    menu.Append(item.release());
}

} // namespace

wxBEGIN_EVENT_TABLE(TarvikSystrayIcon, wxTaskBarIcon)
    EVT_MENU(wxID_EXIT, TarvikSystrayIcon::OnMenuStop)
    EVT_MENU(menuLogs, TarvikSystrayIcon::OnMenuLogs)
    EVT_MENU(menuSettings, TarvikSystrayIcon::OnMenuConf)
    EVT_MENU(wxID_ABOUT, TarvikSystrayIcon::OnAbout)
    EVT_TASKBAR_LEFT_UP(TarvikSystrayIcon::OnLeftUp)
wxEND_EVENT_TABLE()

TarvikSystrayIcon::TarvikSystrayIcon(wxTaskBarIconType type, MenuCommands* commands)
    : wxTaskBarIcon(type), m_commands(commands) {
    bindTrayClick(*this);
    showMenuPictures();
}

wxMenu* TarvikSystrayIcon::CreatePopupMenu() {
    auto menu = std::make_unique<wxMenu>();
    for (MenuEntry const& entry : menuEntries(isStatusItem(*this)))
        append(*menu, entry);
    listenToMenu(*menu, *this);
    return menu.release();
}

void TarvikSystrayIcon::OnMenuStop(wxCommandEvent&) {
    if (m_commands)
        m_commands->stop();
}

void TarvikSystrayIcon::OnMenuLogs(wxCommandEvent&) {
    if (m_commands)
        m_commands->showLogs();
}

void TarvikSystrayIcon::OnMenuConf(wxCommandEvent&) {
    if (m_commands)
        m_commands->showConfigurationDialogModal(nullptr);
}

void TarvikSystrayIcon::OnAbout(wxCommandEvent&) {
    if (m_commands)
        m_commands->showAbout();
}

void TarvikSystrayIcon::OnLeftUp(wxTaskBarIconEvent&) {
    std::unique_ptr<wxMenu> const menu(CreatePopupMenu());
    PopupMenu(menu.get());
}

// The toolkit calls this too, for the tray's right click.
bool TarvikSystrayIcon::PopupMenu(wxMenu* menu) {
    if (MenuLoop::isRunning())
        return false;
    MenuLoop const loop(*menu);
    return wxTaskBarIcon::PopupMenu(menu);
}

} // namespace quillon
