#include "tarvikclient/gui/systray.h"

#include "gui/windowtest.h"
#include "tarvikclient/gui/mainframe.h"

#include <gtest/gtest.h>
#include <wx/artprov.h>
#include <wx/menu.h>

#include <memory>
#include <vector>

namespace quillon {

namespace {

/// Stands in for the program's own pictures.
class Pictures final : public wxArtProvider {
protected:
    wxBitmap CreateBitmap(wxArtID const& id, wxArtClient const& client, wxSize const&) override {
        return id.StartsWith("tarvik-") && client == wxART_OTHER ? wxBitmap(16, 16) : wxNullBitmap;
    }
};

class Systray : public testing::Test {
protected:
    TarvikSystrayIcon icon{wxTBI_CUSTOM_STATUSITEM};
    std::unique_ptr<wxMenu> menu;

    void build() { menu.reset(icon.CreatePopupMenu()); }
    std::vector<int> ids() const {
        std::vector<int> found;
        for (wxMenuItem const* item : menu->GetMenuItems())
            found.push_back(item->GetId());
        return found;
    }
};

} // namespace

TEST_F(Systray, each_entry_has_its_picture_and_a_label) {
    wxArtProvider::Push(new Pictures);
    build();
    wxArtProvider::Pop();
    for (int const id : {10002, 10001, static_cast<int>(wxID_EXIT)})
        EXPECT_TRUE(menu->FindItem(id)->GetBitmap().IsOk()) << id;
    for (wxMenuItem const* item : menu->GetMenuItems())
        EXPECT_TRUE(item->IsSeparator() || (item->IsEnabled() && !item->GetItemLabelText().empty()));
}

TEST_F(Systray, without_pictures_or_a_frame_the_menu_is_complete_and_its_choices_do_nothing) {
    build();
    EXPECT_EQ(ids().size(), 5u);
    ASSERT_EQ(mainhiddenframe, nullptr);
    for (int const id : ids()) {
        wxCommandEvent event(wxEVT_MENU, id);
        EXPECT_TRUE(id == wxID_SEPARATOR || icon.ProcessEvent(event)) << id;
    }
}

} // namespace quillon
