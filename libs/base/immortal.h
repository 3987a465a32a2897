// A value that is constant-initialised and never destroyed.
#pragma once

namespace quillon {

/// Holds one T for the life of the process: made before any dynamic initialisation runs, not destroyed at
/// exit. What logging and strings stand on is kept so, because static constructors and destructors use them.
template <class T>
union Immortal {
    constexpr Immortal() : value() {}
    Immortal(Immortal const&) = delete;
    Immortal& operator=(Immortal const&) = delete;
    ~Immortal() {}

    T value;
};

} // namespace quillon
