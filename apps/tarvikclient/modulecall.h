// Which module is at work, and in which of its exports.
#pragma once

#include "base/string.h"

namespace quillon {

/// The calling thread is in a call of the loaded module for as long as the object lives. One call at a time
/// is known, which is all that there is: the client thread makes them. What is known can be asked for at any
/// moment, in a signal handler too.
class ModuleCall {
public:
    /// `name` is the export's, or the linker's function that runs code of the module; static storage.
    explicit ModuleCall(char const* name) noexcept;
    ~ModuleCall();
    ModuleCall(ModuleCall const&) = delete;
    ModuleCall& operator=(ModuleCall const&) = delete;

    struct AtWork {
        char const* module; ///< its file's name; null when none is loaded. Lives as long as the process
        char const* call;   ///< null when none is under way
        bool here;          ///< whether it is the calling thread that is in the call
    };
    /// Any thread; safe in a signal handler.
    static AtWork current() noexcept;

    /// The module at `path` is the one that is loaded from now on; the empty path: none is.
    static void setModule(String const& path);

private:
    char const* const m_before;
};

} // namespace quillon
