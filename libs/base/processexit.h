// What the toolkit does when the process ends.
#pragma once

namespace quillon {

/// Sees to it that at exit synchronised threads get a bounded time to end, queued log lines a bounded time to
/// be written, and the console's task is stopped. Once per process; called when the console is made, so that
/// it comes after the destructors of nearly everything else.
void arrangeProcessExit();

} // namespace quillon
