#include "tarvikclient/gui/artprovider.h"

#include <wx/display.h>
#include <wx/filename.h>
#include <wx/image.h>
#include <wx/log.h>
#include <wx/stdpaths.h>

#include <cstdio>

namespace quillon {

namespace {

constexpr char logo[] = "tarvik-logo";
constexpr int smallLogo = 16;
constexpr int bigLogo = 64;

struct Icon {
    char const* id;
    char const* file;
};

constexpr Icon icons[] = {{"tarvik-config", "config"}, {"tarvik-stop", "close"}, {"tarvik-logs", "log"}};
constexpr Icon images[] = {{"tarvik-vpn", "vpn"}, {"tarvik-plugin", "plugin"}};

wxString imageDirectory() {
    wxFileName const directory(wxStandardPaths::Get().GetResourcesDir(), "img");
    return directory.GetFullPath();
}

/// An invalid image where the file is missing or broken: a picture is never worth a message.
wxImage readImage(wxString const& directory, wxString const& file) {
    wxLogNull const silence;
    wxImage image;
    wxString const path = wxFileName(directory, file, "png").GetFullPath();
    if (wxFileName::FileExists(path))
        image.LoadFile(path, wxBITMAP_TYPE_PNG);
    return image;
}

bool isDense() {
    for (unsigned i = 0; i < wxDisplay::GetCount(); ++i)
        if (wxDisplay(i).GetScaleFactor() > 1)
            return true;
    return false;
}

wxBitmap readBitmap(wxString const& directory, wxString const& file) {
    if (isDense())
        if (wxImage const image = readImage(directory, file + "@2x"); image.IsOk())
            return wxBitmap(image, wxBITMAP_SCREEN_DEPTH, 2);
    wxImage const image = readImage(directory, file);
    return image.IsOk() ? wxBitmap(image) : wxNullBitmap;
}

void addIcon(wxIconBundle& bundle, wxString const& file) {
    wxImage const image = readImage(imageDirectory(), file);
    if (!image.IsOk())
        return;
    wxIcon icon;
    icon.CopyFromBitmap(wxBitmap(image));
    bundle.AddIcon(icon);
}

/// Names the logo with a sign on it; empty for other ids. The logo alone has none.
wxString fileOf(wxString const& id) {
    for (char const* const mood : {"", "-busy", "-connected", "-trouble"})
        if (id == wxString(logo) + mood)
            return wxString("tarviklogo") + mood;
    return wxString();
}

/// The logo in both sizes, and in twice those where a screen has the pixels for them.
wxIconBundle logoIcons(wxString const& name = "tarviklogo") {
    wxIconBundle bundle;
    for (int const side : {smallLogo, bigLogo}) {
        wxString const file = wxString::Format("%s-%d", name, side);
        addIcon(bundle, file);
        if (isDense())
            addIcon(bundle, file + "@2x");
    }
    return bundle;
}

/// Something to click on in the tray where the logo is missing: a plain square.
wxIcon plainIcon() {
    wxImage image(smallLogo, smallLogo);
    image.SetRGB(wxRect(image.GetSize()), 0x6e, 0x7c, 0x8c); // shows on light and on dark
    wxIcon icon;
    icon.CopyFromBitmap(wxBitmap(image));
    return icon;
}

/// The big logo in as many pixels as the screen has for it.
wxBitmap logoBitmap(wxIconBundle const& bundle) {
    int const scale = isDense() ? 2 : 1;
    wxIcon const icon = bundle.GetIcon(bigLogo * scale, wxIconBundle::FALLBACK_NEAREST_LARGER);
    if (!icon.IsOk())
        return wxNullBitmap;
    wxBitmap bitmap;
    bitmap.CopyFromIcon(icon);
    return bitmap.GetWidth() > bigLogo ? wxBitmap(bitmap.ConvertToImage(), wxBITMAP_SCREEN_DEPTH, scale)
                                       : bitmap;
}

template <typename Handler>
void addHandler() {
    auto* const handler = new Handler;
    if (wxImage::FindHandler(handler->GetName()))
        delete handler;
    else
        wxImage::AddHandler(handler);
}

} // namespace

void TarvikClientArtProvider::init() {
    addHandler<wxPNGHandler>();
    addHandler<wxICOHandler>();
    addHandler<wxBMPHandler>();
}

wxString TarvikClientArtProvider::GetImageDirectory() const {
    wxString const directory = imageDirectory();
    std::puts(directory.utf8_str());
    std::fflush(stdout);
    return directory;
}

wxBitmap TarvikClientArtProvider::CreateBitmap(wxArtID const& id, wxArtClient const& client, wxSize const&) {
    for (Icon const& icon : icons)
        if (id == icon.id)
            return readBitmap(imageDirectory(), icon.file);
    for (Icon const& image : images)
        if (id == image.id)
            return readBitmap(GetImageDirectory(), image.file);
    if (id.StartsWith(logo) && client == wxART_MESSAGE_BOX)
        return logoBitmap(logoIcons());
    return wxNullBitmap;
}

wxIconBundle TarvikClientArtProvider::CreateIconBundle(wxArtID const& id, wxArtClient const&) {
    wxString const file = fileOf(id);
    if (file.empty())
        return wxIconBundle();
    wxIconBundle bundle = logoIcons(file);
    // Given no icon, the toolkit would complain in a message box.
    if (bundle.IsEmpty())
        bundle.AddIcon(plainIcon());
    return bundle;
}

wxIconBundle programIcons() {
    if (!wxArtProvider::GetBitmap(logo, wxART_MESSAGE_BOX).IsOk())
        return wxIconBundle();
    return wxArtProvider::GetIconBundle(logo, wxART_OTHER);
}

} // namespace quillon
