#include "base/log.h"

#include "base/console.h"

namespace quillon {

void log(LogCategory category, String const& cls, String const& method, String const& text) noexcept {
    if (Console* const target = Console::instance().get())
        target->log(category, cls, method, text);
}

void log(LogCategory category, String const& tag, String const& cls, String const& method,
         String const& text) noexcept {
    if (Console* const target = Console::instance().get())
        target->log(category, tag, cls, method, text);
}

void log(LogCategory category, String const& cls, int number, String const& text) noexcept {
    if (Console* const target = Console::instance().get())
        target->log(category, cls, number, text);
}

void log(LogCategory category, String const& tag, String const& cls, int number,
         String const& text) noexcept {
    if (Console* const target = Console::instance().get())
        target->log(category, tag, cls, number, text);
}

} // namespace quillon
