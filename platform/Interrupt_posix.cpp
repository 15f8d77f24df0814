#include <atomic>
#include <csignal>

#include "platform/Interrupt.h"

namespace conduit {
namespace {

std::atomic<int> caughtSignal = 0;
static_assert(std::atomic<int>::is_always_lock_free);  // a signal handler requires it

void RememberSignal(int signal) { caughtSignal = signal; }

}  // namespace

void CatchInterrupts() {
  struct sigaction once = {};
  once.sa_handler = RememberSignal;
  once.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  sigemptyset(&once.sa_mask);
  sigaction(SIGINT, &once, nullptr);
  sigaction(SIGTERM, &once, nullptr);

  // Under nohup, SIGHUP stays ignored.
  struct sigaction present = {};
  sigaction(SIGHUP, nullptr, &present);
  if (present.sa_handler != SIG_IGN) {
    sigaction(SIGHUP, &once, nullptr);
  }

  signal(SIGPIPE, SIG_IGN);
}

int InterruptStatus() { return caughtSignal == 0 ? 0 : 128 + caughtSignal; }

}  // namespace conduit
