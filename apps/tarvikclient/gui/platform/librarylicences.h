// The libraries that only one platform's program stands on.
#pragma once

namespace quillon {

/// A line for each: its name, a colon and its licence's name, which no language translates. Any thread.
char const* platformLibraryLicences();

} // namespace quillon
