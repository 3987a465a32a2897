#include "tarvikclient/gatewayconsent.h"

namespace quillon {

void GatewayQuestion::answer(Answer answer) {
    TSynchronize<Mutex> lock(m_mutex);
    if (!m_answer)
        m_answer = answer;
    m_answered.broadcast();
}

GatewayQuestion::Answer GatewayQuestion::await() {
    TSynchronize<Mutex> lock(m_mutex);
    while (!m_answer)
        m_answered.wait(m_mutex);
    return *m_answer;
}

bool GatewayQuestion::isOpen() const {
    TSynchronize<Mutex> lock(m_mutex);
    return !m_answer;
}

} // namespace quillon
