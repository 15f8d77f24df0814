#pragma once

namespace conduit {

/// Takes over Ctrl-C and requests to end the process, so that the reader is
/// stopped and the module destroyed first; on Windows also Ctrl-Break, the end of the
/// console's window, a log-off and a shutdown. The second of its kind ends the process
/// at once, for a module may hang; the last three have a time limit of the system's
/// instead. From here on, writing into a closed pipe is an error of the write and does
/// not end the process.
void CatchInterrupts();

/// 0, or the exit status of a process that was asked to end.
int InterruptStatus();

}  // namespace conduit
