#include "tarvikclient/gui/model/quitting.h"

namespace quillon {

void Quitting::begin(Time now, bool atWork) {
    if (begun())
        return;
    m_stage = Stage::asked;
    m_begin = now;
    m_due = atWork ? now + grace : now;
}

Quitting::Step Quitting::advance(Time now) {
    bool const due = now >= m_due;
    if (due && m_stage == Stage::asked) {
        m_stage = Stage::cut;
        m_due = now + patience;
        return Step::cancel;
    }
    if (due && m_stage == Stage::cut) {
        m_stage = Stage::abandoned;
        return Step::abandon;
    }
    return Step::wait;
}

} // namespace quillon
