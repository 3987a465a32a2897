// The environment that the toolkit starts in.
#pragma once

namespace quillon {

/// Puts into the environment what the toolkit is to find there. Called before it starts, by the only thread.
void prepareEnvironment();
/// Takes that out again, because a module's programs inherit the environment. Called once the toolkit has
/// started and before there is a session.
void restoreEnvironment();

} // namespace quillon
