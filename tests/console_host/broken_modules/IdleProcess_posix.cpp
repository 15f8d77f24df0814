#include <unistd.h>

#include "tests/console_host/broken_modules/IdleProcess.h"

void conduit::StartIdleProcess() {
  if (fork() == 0) {
    pause();
    _exit(0);
  }
}
