#include <windows.h>

#include <atomic>

#include "platform/Interrupt.h"

namespace conduit {

namespace {

std::atomic<bool> interrupted = false;

BOOL WINAPI RememberInterrupt(DWORD /*event*/) { return interrupted.exchange(true) ? FALSE : TRUE; }

}  // namespace

void CatchInterrupts() { SetConsoleCtrlHandler(RememberInterrupt, TRUE); }

int InterruptStatus() { return interrupted ? 130 : 0; }

}  // namespace conduit
