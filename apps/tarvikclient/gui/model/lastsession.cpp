#include "tarvikclient/gui/model/lastsession.h"

#include "tarvikclient/gui/model/wxconversion.h"

#include <wx/translation.h>

#include <clocale>
#include <ctime>
#include <string_view>

namespace quillon {

namespace {

/// As people write it where this one lives, as far as the C library knows; what it takes for granted
/// otherwise would be read in two ways.
char const* timeFormat() {
    std::string_view const locale = std::setlocale(LC_TIME, nullptr);
    return locale == "POSIX" || locale == "C" || locale.starts_with("C.") ? "%Y-%m-%d, %H:%M" : "%x, %H:%M";
}

wxString localTime(DateTime const& time) {
    std::time_t const seconds = time.seconds();
    std::tm local{};
    char text[128] = "";
    if (localtime_r(&seconds, &local))
        std::strftime(text, sizeof text, timeFormat(), &local);
    return quillonToWxString(String::copyOf(text));
}

wxString whatHappened(LeftSession const& session) {
    bool const moduleAtWork = !session.module.empty();
    switch (session.end) {
    case LeftSession::End::crashed:
    case LeftSession::End::exited:
        // TRANSLATORS: {module} is the name of a file that the gateway has sent.
        return moduleAtWork ? _("LAST_SESSION_MODULE_FAILED") : _("LAST_SESSION_FAILED");
    case LeftSession::End::vanished:
        break;
    }
    // TRANSLATORS: nothing is known of the reason.
    return _("LAST_SESSION_VANISHED");
}

} // namespace

wxString lastSessionText(LeftSession const& session) {
    wxString text = whatHappened(session);
    text.Replace("{module}", quillonToWxString(session.module));
    if (session.ended)
        // TRANSLATORS: a sentence of its own; {time} is a date and a time.
        text += " " + _("LAST_SESSION_ENDED_AT");
    else if (session.begun)
        // TRANSLATORS: a sentence of its own; {time} is a date and a time.
        text += " " + _("LAST_SESSION_BEGUN_AT");
    if (session.ended || session.begun)
        text.Replace("{time}", localTime(session.ended ? *session.ended : *session.begun));
    return text;
}

} // namespace quillon
