#include "tarvikclient/gui/wxlogbridge.h"

#include "base/log.h"
#include "tarvikclient/gui/model/wxconversion.h"

namespace quillon {

void WxLogBridge::DoLogRecord(wxLogLevel level, wxString const& text, wxLogRecordInfo const&) {
    log(level <= wxLOG_Error ? ERROR : DEBUG, "wxWidgets", "log", wxToUtf8(text));
}

} // namespace quillon
