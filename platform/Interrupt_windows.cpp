#include <windows.h>

#include <atomic>

#include "platform/Interrupt.h"

namespace conduit {
namespace {

/// One bit for each kind of event received.
std::atomic<unsigned> interrupts = 0;

/// Runs on a thread that the system starts in this process.
BOOL WINAPI RememberInterrupt(DWORD event) {
  const unsigned kind = 1U << event;
  const bool isFirst = (interrupts.fetch_or(kind) & kind) == 0;
  const bool endsWhenThisReturns =
      event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT;
  if (endsWhenThisReturns) {
    // Blocks until main returns, which ends this thread, or the system's time limit expires.
    Sleep(INFINITE);
  }
  return isFirst ? TRUE : FALSE;  // FALSE: the system ends the process
}

}  // namespace

void CatchInterrupts() { SetConsoleCtrlHandler(RememberInterrupt, TRUE); }

int InterruptStatus() { return interrupts != 0 ? 130 : 0; }

}  // namespace conduit
