#include <windows.h>
// After windows.h, whose types it uses.
#include <shellapi.h>

#include <cstdlib>
#include <cwchar>

#include "platform/FilePath.h"
#include "platform/Process.h"

namespace conduit {
namespace {

LONG WINAPI EndWithCode(EXCEPTION_POINTERS* crash) {
  TerminateProcess(GetCurrentProcess(), crash->ExceptionRecord->ExceptionCode);
  return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

/// main's own arguments come in the system's code page, which loses characters.
std::vector<std::string> ProgramArguments(int /*count*/, const char* const* /*arguments*/) {
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) {
    arguments.push_back(Utf8FromPath(wide[i]));
  }
  LocalFree(wide);
  return arguments;
}

std::filesystem::path ProgramFile() {
  std::wstring file(32768, L'\0');  // the longest path that Windows has
  file.resize(GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size())));
  return file;
}

// A user's folders are that user's own from the start.
void KeepFilesPrivate() {}

void EndAtOnceOnCrash() { SetUnhandledExceptionFilter(EndWithCode); }

void SetEnvironment(const char* name, const std::filesystem::path& value) {
  // Unlike SetEnvironmentVariable this also reaches getenv of the C library.
  _wputenv_s(std::filesystem::path(name).c_str(), value.c_str());
}

}  // namespace conduit
