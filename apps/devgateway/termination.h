// SIGINT and SIGTERM, without a handler: they are held back in every thread and looked for from time to time.
#pragma once

namespace devgateway {

/// Holds both signals back, also where the parent had them ignored (a shell does, for what it starts in the
/// background). To be called first, while there is one thread: the others inherit it.
void holdTerminationSignals();

/// Whether one of them has arrived. Any thread may ask; asking does not take the signal away.
bool isTerminationPending();

} // namespace devgateway
