#include "tarvikclient/keptforsignals.h"

#include "base/mutex.h"

#include <fcntl.h>

#include <set>
#include <string>

namespace quillon {

char const* keptForSignals(String const& text) {
    static auto& mutex = *new Mutex;
    static auto& texts = *new std::set<std::string>;
    TSynchronize<Mutex> lock(mutex);
    return texts.emplace(text.view()).first->c_str();
}

void SignalDescriptor::set(Descriptor file) noexcept {
    if (m_number < 0)
        m_number = file.release();
    else if (dup2(file.number(), m_number) >= 0)
        fcntl(m_number, F_SETFD, FD_CLOEXEC);
}

} // namespace quillon
