#include "tarvikclient/gui/artprovider.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/ffile.h>
#include <wx/filename.h>
#include <wx/log.h>
#include <wx/stdpaths.h>

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

constexpr char const* names[] = {"tarvik-config", "tarvik-stop", "tarvik-logs", "tarvik-vpn",
                                 "tarvik-plugin"};

} // namespace

TEST_F(ArtProvider, answersEachNameInItsSize) {
    int const sides[] = {16, 16, 16, 32, 32};
    for (std::size_t i = 0; i < std::size(names); ++i) {
        wxBitmap const bitmap = provider.bitmap(names[i]);
        ASSERT_TRUE(bitmap.IsOk()) << names[i];
        EXPECT_EQ(bitmap.GetLogicalWidth(), sides[i]) << names[i];
        EXPECT_EQ(bitmap.GetLogicalHeight(), sides[i]) << names[i];
        EXPECT_TRUE(bitmap.HasAlpha()) << names[i];
    }
}

TEST_F(ArtProvider, hasTheLogoAsIconsAndForMessagesAsBitmap) {
    wxIconBundle const bundle = provider.CreateIconBundle("tarvik-logo", wxART_OTHER);
    EXPECT_TRUE(bundle.GetIconOfExactSize(16).IsOk());
    EXPECT_TRUE(bundle.GetIconOfExactSize(64).IsOk());
    EXPECT_FALSE(provider.bitmap("tarvik-logo").IsOk());
    for (char const* id : {"tarvik-logo", "tarvik-logo-large"}) {
        wxBitmap const bitmap = provider.bitmap(id, "wxART_MESSAGE_BOX_C");
        ASSERT_TRUE(bitmap.IsOk()) << id;
        EXPECT_EQ(bitmap.GetLogicalWidth(), 64) << id;
    }
}

TEST_F(ArtProvider, leavesOtherNamesToTheNextProvider) {
    EXPECT_FALSE(provider.bitmap("tarvik-unknown").IsOk());
    EXPECT_FALSE(provider.bitmap("tarvik-log").IsOk());
    EXPECT_TRUE(provider.CreateIconBundle("tarvik-config", wxART_OTHER).IsEmpty());
    wxArtProvider::Push(new TarvikClientArtProvider);
    EXPECT_TRUE(wxArtProvider::GetBitmap(wxART_WARNING, wxART_CMN_DIALOG).IsOk());
    EXPECT_TRUE(wxArtProvider::GetBitmap("tarvik-vpn").IsOk());
    wxArtProvider::Pop();
}

TEST_F(ArtProvider, writesTheImageDirectoryToStandardOutput) {
    testing::internal::CaptureStdout();
    wxString const directory = provider.GetImageDirectory();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string(directory.utf8_str()) + "\n");
    EXPECT_TRUE(wxFileName::DirExists(directory));
    EXPECT_TRUE(directory.EndsWith("img"));
}

TEST_F(ArtProvider, saysNothingOfMissingPictures) {
    wxTheApp->SetAppName("tarvikclient-without-pictures");
    for (char const* name : names)
        EXPECT_FALSE(provider.bitmap(name).IsOk()) << name;
    EXPECT_FALSE(provider.bitmap("tarvik-logo", "wxART_MESSAGE_BOX_C").IsOk());
    wxArtProvider::Push(new TarvikClientArtProvider);
    wxIcon const icon = wxArtProvider::GetIconBundle("tarvik-logo").GetIcon(16);
    ASSERT_TRUE(icon.IsOk()) << "the status area would refuse it";
    EXPECT_TRUE(wxBitmap(icon).ConvertToImage().IsTransparent(8, 8));
    wxArtProvider::Pop();
    EXPECT_EQ(log.GetBuffer(), "");
}

TEST_F(ArtProvider, saysNothingOfABrokenPicture) {
    wxTheApp->SetAppName(wxString::Format("tarvikclient-broken-%lu", wxGetProcessId()));
    wxString const directory = provider.GetImageDirectory();
    ASSERT_TRUE(wxFileName::Mkdir(directory, wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL));
    wxFFile(directory + "/vpn.png", "w").Write("\x89PNG\r\n\x1a\nand then nothing");
    EXPECT_FALSE(provider.bitmap("tarvik-vpn").IsOk());
    EXPECT_EQ(log.GetBuffer(), "");
    wxFileName::Rmdir(wxPathOnly(directory), wxPATH_RMDIR_RECURSIVE);
}

} // namespace quillon
