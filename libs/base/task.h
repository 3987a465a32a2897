// A thread that runs a member function of another object.
#pragma once

#include "base/thread.h"

namespace quillon {

/// Runs `member` of `object` as its body. The object must outlive the running thread; the task does not own
/// it.
template <class T>
class Task final : public Thread {
public:
    Task(String const& name, T& object, void (T::*member)(), Priority priority, bool synchronised)
        : Thread(name, priority, synchronised), m_object(object), m_member(member) {}

    void main() override { (m_object.*m_member)(); }

private:
    T& m_object;
    void (T::*m_member)();
};

} // namespace quillon
