// From wxWidgets' log to the client's.
#pragma once

#include <wx/log.h>

namespace quillon {

/// Takes wxWidgets' messages to the client's log, where support looks for them, instead of into message
/// boxes, which the user could do nothing about. Any thread.
class WxLogBridge final : public wxLog {
protected:
    void DoLogRecord(wxLogLevel level, wxString const& text, wxLogRecordInfo const& information) override;
};

} // namespace quillon
