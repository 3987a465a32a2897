#include "tarvikclient/gui/systray.h"

#include "tarvikclient/gui/desktop.h"
#include "tarvikclient/gui/mainframe.h"
#include "tarvikclient/gui/nestedloops.h"
#include "tarvikclient/gui/statusitem.h"

#include <wx/artprov.h>
#include <wx/menu.h>

#include <memory>

namespace quillon {

namespace {

void append(wxMenu& menu, int id, wxString const& label, wxString const& art) {
    auto item = std::make_unique<wxMenuItem>(&menu, id, label);
    if (wxBitmap const picture = wxArtProvider::GetBitmap(art, wxART_OTHER); picture.IsOk())
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

TarvikSystrayIcon::TarvikSystrayIcon(wxTaskBarIconType type) : wxTaskBarIcon(type) {
    bindTrayClick(*this);
    showMenuPictures();
}

wxMenu* TarvikSystrayIcon::CreatePopupMenu() {
    auto menu = std::make_unique<wxMenu>();
    // Without this only a menu that the tray pops up would find its way here.
    menu->SetEventHandler(this);
    // TRANSLATORS: entry of the status icon's menu: opens the settings
    append(*menu, menuSettings, _("MENU_SETTINGS"), "tarvik-config");
    // TRANSLATORS: entry of the status icon's menu: shows the log file
    append(*menu, menuLogs, _("MENU_LOGS"), "tarvik-logs");
    menu->AppendSeparator();
    menu->Append(wxID_ABOUT);
    if (isStatusItem(*this))
        append(*menu, wxID_EXIT, wxString(), "tarvik-stop");
    return menu.release();
}

void TarvikSystrayIcon::OnMenuStop(wxCommandEvent&) {
    if (mainhiddenframe)
        mainhiddenframe->stop();
}

void TarvikSystrayIcon::OnMenuLogs(wxCommandEvent&) {
    if (mainhiddenframe)
        mainhiddenframe->showLogs();
}

void TarvikSystrayIcon::OnMenuConf(wxCommandEvent&) {
    if (mainhiddenframe)
        mainhiddenframe->showConfigurationDialogModal(nullptr);
}

void TarvikSystrayIcon::OnAbout(wxCommandEvent&) {
    if (mainhiddenframe)
        mainhiddenframe->showAbout();
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
