#include <windows.h>

#include "platform/Terminal.h"

namespace conduit {

bool PrepareTerminal() {
  SetConsoleOutputCP(CP_UTF8);
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD mode = 0;
  if (!GetConsoleMode(output, &mode)) return false;
  return SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

bool TroubleShowsBesideOutput() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) &&
         GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode);
}

}  // namespace conduit
