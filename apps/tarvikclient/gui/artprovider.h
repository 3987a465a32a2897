// The program's pictures, by name.
#pragma once

#include <wx/artprov.h>
#include <wx/iconbndl.h>

namespace quillon {

/// Answers "tarvik-config", "tarvik-stop", "tarvik-logs", "tarvik-vpn", "tarvik-plugin" and "tarvik-logo"
/// from the files of the image directory. Any other name, and a picture whose file is missing, is left to the
/// next provider, but for the icons of "tarvik-logo", which are a plain square then. Interface thread only.
class TarvikClientArtProvider : public wxArtProvider {
public:
    /// Registers the image formats that the provider reads; called once, before the first picture is wanted.
    static void init();

    /// Where the pictures are: "img" in the application's resources. Also written to standard output.
    wxString GetImageDirectory() const;

protected:
    wxBitmap CreateBitmap(wxArtID const& id, wxArtClient const& client, wxSize const& size) override;
    wxIconBundle CreateIconBundle(wxArtID const& id, wxArtClient const& client) override;
};

/// The icons of the program's windows; none where no provider has them, which the toolkit would complain of
/// in a message box. Interface thread only.
wxIconBundle programIcons();

} // namespace quillon
