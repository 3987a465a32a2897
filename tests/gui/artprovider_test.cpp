#include "tarvikclient/gui/artprovider.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/ffile.h>
#include <wx/filename.h>
#include <wx/log.h>

namespace quillon {

namespace {

/// The provider itself, without the cache in front of it.
class Provider : public TarvikClientArtProvider {
public:
    using TarvikClientArtProvider::CreateBitmap;
    using TarvikClientArtProvider::CreateIconBundle;

    wxBitmap bitmap(char const* id, char const* client = "wxART_OTHER_C") {
        return CreateBitmap(id, client, wxDefaultSize);
    }
};

/// Runs under the program's name, by which its pictures are found, and keeps what is logged meanwhile.
class ArtProvider : public testing::Test {
protected:
    void SetUp() override {
        TarvikClientArtProvider::init();
        wxTheApp->SetAppName("tarvikclient");
        m_before = wxLog::SetActiveTarget(&log);
    }
    void TearDown() override {
        wxLog::SetActiveTarget(m_before);
        wxTheApp->SetAppName(m_name);
    }

    Provider provider;
    wxLogBuffer log;

private:
    wxString m_name = wxTheApp->GetAppName();
    wxLog* m_before = nullptr;
};

struct {
    char const *name, *client;
    int side;
} constexpr pictures[] = {{"tarvik-config", "wxART_OTHER_C", 16},
                          {"tarvik-stop", "wxART_OTHER_C", 16},
                          {"tarvik-logs", "wxART_OTHER_C", 16},
                          {"tarvik-vpn", "wxART_OTHER_C", 32},
                          {"tarvik-plugin", "wxART_OTHER_C", 32},
                          {"tarvik-logo", "wxART_MESSAGE_BOX_C", 64},
                          {"tarvik-logo-large", "wxART_MESSAGE_BOX_C", 64}};

} // namespace

TEST_F(ArtProvider, answers_each_name_in_its_size) {
    for (auto const& [name, client, side] : pictures) {
        wxBitmap const bitmap = provider.bitmap(name, client);
        ASSERT_TRUE(bitmap.IsOk()) << name;
        EXPECT_EQ(bitmap.GetLogicalSize(), wxSize(side, side)) << name;
        EXPECT_TRUE(bitmap.HasAlpha()) << name;
    }
    wxIconBundle const bundle = provider.CreateIconBundle("tarvik-logo", wxART_OTHER);
    EXPECT_TRUE(bundle.GetIconOfExactSize(16).IsOk());
    EXPECT_TRUE(bundle.GetIconOfExactSize(64).IsOk());
    for (char const* const other : {"tarvik-unknown", "tarvik-log", "tarvik-logo"})
        EXPECT_FALSE(provider.bitmap(other).IsOk()) << other;
}

TEST_F(ArtProvider, says_nothing_of_missing_and_broken_pictures) {
    wxTheApp->SetAppName("tarvikclient-without-pictures");
    for (auto const& [name, client, side] : pictures)
        EXPECT_FALSE(provider.bitmap(name, client).IsOk()) << name;
    wxIcon const icon = provider.CreateIconBundle("tarvik-logo", wxART_OTHER).GetIcon(16);
    ASSERT_TRUE(icon.IsOk()) << "the status area would refuse it";
    EXPECT_FALSE(wxBitmap(icon).ConvertToImage().IsTransparent(8, 8)) << "nobody could click on it";
    wxTheApp->SetAppName(wxString::Format("tarvikclient-broken-%lu", wxGetProcessId()));
    wxString const directory = provider.GetImageDirectory();
    ASSERT_TRUE(wxFileName::Mkdir(directory, wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL));
    wxFFile(directory + "/vpn.png", "w").Write("\x89PNG\r\n\x1a\nand then nothing");
    EXPECT_FALSE(provider.bitmap("tarvik-vpn").IsOk());
    wxFileName::Rmdir(wxPathOnly(directory), wxPATH_RMDIR_RECURSIVE);
    EXPECT_EQ(log.GetBuffer(), "");
}

} // namespace quillon
