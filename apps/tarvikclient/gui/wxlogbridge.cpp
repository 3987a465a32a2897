#include "tarvikclient/gui/wxlogbridge.h"

#include "base/log.h"
#include "tarvikclient/gui/model/wxconversion.h"

namespace quillon {

void WxLogBridge::DoLogRecord(wxLogLevel level, wxString const& text, wxLogRecordInfo const&) {
    wxScopedCharBuffer const utf8 = text.utf8_str();
    log(level <= wxLOG_Error ? ERROR : DEBUG, "wxWidgets", "log",
        String::copyOf({utf8.data(), utf8.length()}));
}

} // namespace quillon
