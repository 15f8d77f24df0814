#include <windows.h>

#include <atomic>

#include "platform/Interrupt.h"

namespace conduit {
namespace {

std::atomic<bool> interrupted = false;

BOOL WINAPI RememberInterrupt(DWORD event) {
  const bool isFirst = !interrupted.exchange(true);
  const bool endsWhenThisReturns =
      event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT;
  if (isFirst && endsWhenThisReturns) {
    // Until the program has ended by itself, or the system has waited long enough.
    Sleep(INFINITE);
  }
  return isFirst ? TRUE : FALSE;
}

}  // namespace

void CatchInterrupts() { SetConsoleCtrlHandler(RememberInterrupt, TRUE); }

int InterruptStatus() { return interrupted ? 130 : 0; }

}  // namespace conduit
