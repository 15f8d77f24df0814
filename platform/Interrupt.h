#pragma once

namespace conduit {

/// Catches Ctrl-C and requests to end the process, so that the program can stop the
/// reader and destroy the module first; on Windows also Ctrl-Break, closing of the
/// console window, log-off and shutdown. A second request of the same kind ends the
/// process at once, because a module may hang; the last three have a time limit of the
/// system instead. After this call, a write to a closed pipe fails and does not end the
/// process.
void CatchInterrupts();

/// Returns 0, or the exit status once the process was asked to end.
int InterruptStatus();

}  // namespace conduit
