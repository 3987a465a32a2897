// The dialog that says why the gateway was not reached.
#pragma once

#include "tarvikclient/gui/guielements.h"
#include "tarvikclient/gui/model/connectionadvice.h"

namespace quillon {

/// Interface thread only.
class TarvikClientConnectionErrorDialog : public ConnectionErrorDialog {
public:
    /// What ShowModal() returns for the two buttons that end the dialog. Any other value: closed from its
    /// title bar.
    enum Choice { quit = 1, retry = 2 };

    explicit TarvikClientConnectionErrorDialog(wxWindow* parent);

    /// Names the gateway in the heading; an empty name leaves the heading without one.
    void setGateway(wxString const& gateway);
    /// What happened and what to do; none at first.
    void setAdvice(ConnectionAdvice const& advice);
    /// The failed request's description, of any length: it neither widens the dialog beyond the screen nor
    /// hides its buttons. What it holds of a stranger's is shown without what could mislead.
    void setErrorContent(wxString const& text);

protected:
    void onRetry(wxCommandEvent& event) override;
    void onQuit(wxCommandEvent& event) override;

private:
    void fit();
    void wrapTexts(int width);
    /// Whether the dialog goes onto the screen.
    bool fitDetails(int width);

    wxString m_heading;
    ConnectionAdvice m_advice;
};

} // namespace quillon
