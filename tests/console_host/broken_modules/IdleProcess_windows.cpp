#include <windows.h>

#include "tests/console_host/broken_modules/IdleProcess.h"

/// Any program will do: it is never let run.
void conduit::StartIdleProcess() {
  wchar_t program[MAX_PATH];
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION child = {};
  CreateProcessW(program, nullptr, nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr, nullptr,
                 &startup, &child);
}
