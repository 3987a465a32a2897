// What the status icon's menu can order.
#pragma once

class wxWindow;

namespace quillon {

/// Carries out what is chosen from the menu. Interface thread only.
class MenuCommands {
public:
    virtual void stop() = 0;
    virtual void showLogs() = 0;
    /// `parent` may be null.
    virtual void showConfigurationDialogModal(wxWindow* parent) = 0;
    virtual void showAbout() = 0;

protected:
    ~MenuCommands() = default;
};

} // namespace quillon
