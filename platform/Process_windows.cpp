#include <windows.h>

#include "platform/CommandLine_windows.h"
#include "platform/FilePath.h"
#include "platform/Process.h"

namespace conduit {
namespace {

LONG WINAPI EndWithCode(EXCEPTION_POINTERS* crash) {
  TerminateProcess(GetCurrentProcess(), crash->ExceptionRecord->ExceptionCode);
  return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

/// main's own arguments come in the system's code page, which before Windows 10 is never
/// UTF-8 and loses characters.
std::vector<std::string> ProgramArguments(int /*count*/, const char* const* /*arguments*/) {
  return ArgumentsOf(GetCommandLineW());
}

std::filesystem::path ProgramFile() {
  std::wstring file(32768, L'\0');  // the longest path that Windows has
  file.resize(GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size())));
  return file;
}

// A user's folders are that user's own from the start.
void KeepFilesPrivate() {}

// They do from the start.
void LetWritesFail() {}

void EndAtOnceOnCrash() { SetUnhandledExceptionFilter(EndWithCode); }

}  // namespace conduit
