// The about dialog.
#pragma once

#include "tarvikclient/gui/guielements.h"

namespace quillon {

/// Interface thread only.
class TarvikClientAboutDialog : public AboutDialog {
public:
    explicit TarvikClientAboutDialog(wxWindow* parent);

protected:
    void onClose(wxCommandEvent& event) override;
};

} // namespace quillon
