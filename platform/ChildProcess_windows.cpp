#include <windows.h>

#include <cstdio>
#include <stdexcept>

#include "platform/ChildProcess.h"
#include "platform/FilePath.h"

namespace conduit {

namespace {

struct CrashName {
  DWORD code;
  const char* name;
};

constexpr CrashName CrashNames[] = {
    {0xC0000005, "access violation"},     {0xC0000094, "integer division by zero"},
    {0xC00000FD, "stack overflow"},       {0xC0000374, "heap corruption"},
    {0xC0000409, "stack buffer overrun"}, {0xC000001D, "illegal instruction"},
    {0xE06D7363, "uncaught exception"},   {0x20474343, "uncaught exception"},
};

/// The system's severity "error": no program exits with such a status by itself.
bool IsCrash(DWORD status) { return status >= 0xC0000000 || status == 0x20474343; }

std::string NameOfCrash(DWORD status) {
  for (const CrashName& crash : CrashNames) {
    if (crash.code == status) return crash.name;
  }
  char text[32];
  std::snprintf(text, sizeof text, "exception 0x%08lX", static_cast<unsigned long>(status));
  return text;
}

/// In the form that the C runtime of the child takes apart again: backslashes
/// count only where a quote follows.
std::wstring Quoted(const std::wstring& word) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t character : word) {
    if (character == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = character == L'\\' ? backslashes + 1 : 0;
    quoted += character;
  }
  return quoted.append(backslashes, L'\\') + L'"';
}

[[noreturn]] void Refuse(const std::filesystem::path& file) {
  throw std::runtime_error("cannot start " + Utf8FromPath(file) + ": error " +
                           std::to_string(GetLastError()));
}

HANDLE OpenInheritable(const wchar_t* file, DWORD access, DWORD disposition) {
  SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
  return CreateFileW(file, access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable, disposition,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

ChildOutcome RunChild(const std::filesystem::path& program,
                      const std::vector<std::string>& arguments,
                      const std::filesystem::path& folder, const std::filesystem::path& output,
                      std::chrono::milliseconds limit) {
  std::wstring line = Quoted(program.wstring());
  for (const std::string& argument : arguments) {
    line += L' ' + Quoted(PathFromUtf8(argument).wstring());
  }

  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);  // no dialog for a crash
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = OpenInheritable(L"NUL", GENERIC_READ, OPEN_EXISTING);
  startup.hStdOutput = OpenInheritable(output.c_str(), FILE_APPEND_DATA, CREATE_ALWAYS);
  startup.hStdError = startup.hStdOutput;
  PROCESS_INFORMATION child = {};
  const BOOL started = CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0,
                                      nullptr, folder.c_str(), &startup, &child);
  if (!started) Refuse(program);
  CloseHandle(startup.hStdInput);
  CloseHandle(startup.hStdOutput);

  const bool ended =
      WaitForSingleObject(child.hProcess, static_cast<DWORD>(limit.count())) == WAIT_OBJECT_0;
  if (!ended) {
    TerminateProcess(child.hProcess, 1);
    WaitForSingleObject(child.hProcess, INFINITE);
  }
  DWORD status = 0;
  GetExitCodeProcess(child.hProcess, &status);
  CloseHandle(child.hThread);
  CloseHandle(child.hProcess);

  if (!ended) return {ChildOutcome::End::TimedOut, 0, ""};
  if (IsCrash(status)) return {ChildOutcome::End::Crashed, 0, NameOfCrash(status)};
  return {ChildOutcome::End::Exited, static_cast<int>(status), ""};
}

}  // namespace conduit
