// What a platform supplies about threads.
#pragma once

namespace quillon::native {

/// Names the calling thread for debuggers; at most 15 bytes and a NUL.
void nameThisThread(char const* name);

} // namespace quillon::native
