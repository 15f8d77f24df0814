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

/// @param library  null for the program
std::filesystem::path FileOf(HMODULE library) {
  std::wstring file(32768, L'\0');  // the longest path that Windows has
  file.resize(GetModuleFileNameW(library, file.data(), static_cast<DWORD>(file.size())));
  return file;
}

}  // namespace

/// The arguments of main are in the system's code page, which loses characters; before
/// Windows 10 it is never UTF-8.
std::vector<std::string> ProgramArguments(int /*count*/, const char* const* /*arguments*/) {
  return ArgumentsOf(GetCommandLineW());
}

std::filesystem::path ProgramFile() { return FileOf(nullptr); }

std::filesystem::path FileOfCode(const void* address) {
  HMODULE library = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      static_cast<const wchar_t*>(address), &library);
  return FileOf(library);
}

std::int64_t ProcessNumber() { return GetCurrentProcessId(); }

// A user's folders are private by default.
void KeepFilesPrivate() {}

// The default on Windows.
void LetWritesFail() {}

void EndAtOnceOnCrash() { SetUnhandledExceptionFilter(EndWithCode); }

}  // namespace conduit
