// The least that a wxWidgets program can be: shows one frame and ends once it has been drawn, or, with an
// argument, when it is told to.
#include <wx/app.h>
#include <wx/frame.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

class MinimalApp : public wxApp {
public:
    bool OnInit() override {
        auto* const frame = new wxFrame(nullptr, wxID_ANY, "minimal");
        new wxStaticText(frame, wxID_ANY, "one frame");
        frame->Bind(wxEVT_PAINT, [this](wxPaintEvent& event) {
            event.Skip();
            if (argc == 1)
                CallAfter([this] { ExitMainLoop(); });
        });
        frame->Show();
        return true;
    }
};

wxIMPLEMENT_APP(MinimalApp);
