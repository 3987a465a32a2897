#include "tarvikclient/gui/clientlog.h"

#include "base/log.h"
#include "tarvikclient/gui/conversion.h"

namespace quillon {

void ClientLog::DoLogRecord(wxLogLevel level, wxString const& text, wxLogRecordInfo const&) {
    wxScopedCharBuffer const utf8 = text.utf8_str();
    log(level <= wxLOG_Error ? ERROR : DEBUG, "wxWidgets", "log",
        String::copyOf({utf8.data(), utf8.length()}));
}

} // namespace quillon
