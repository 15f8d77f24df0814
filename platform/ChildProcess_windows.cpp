#include <windows.h>

#include <chrono>
#include <cstdio>
#include <stdexcept>

#include "platform/ChildProcess.h"
#include "platform/CommandLine_windows.h"
#include "platform/FilePath.h"
#include "platform/Interrupt.h"

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

/// A status of severity "error" from the system itself, 0xC at the top. An exit with -1
/// sets every bit and is no crash.
bool IsCrash(DWORD status) {
  return status >> 28 == 0xC || status == 0xE06D7363 || status == 0x20474343;
}

/// Owns a handle.
class Handle {
 public:
  explicit Handle(HANDLE handle) : value(handle) {}
  ~Handle() {
    if (value && value != INVALID_HANDLE_VALUE) CloseHandle(value);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  const HANDLE value;
};

/// Creates a job that ends its processes when it is closed, also by the end of this process.
HANDLE CreateJob() {
  const HANDLE job = CreateJobObjectW(nullptr, nullptr);
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

bool EndsWithin(HANDLE process, std::chrono::milliseconds time) {
  return WaitForSingleObject(process, static_cast<DWORD>(time.count())) == WAIT_OBJECT_0;
}

std::string NameOfCrash(DWORD status) {
  for (const CrashName& crash : CrashNames) {
    if (crash.code == status) {
      return crash.name;
    }
  }
  char text[32];
  std::snprintf(text, sizeof text, "exception 0x%08lX", static_cast<unsigned long>(status));
  return text;
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
  std::wstring line = CommandLine(program, arguments);
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);  // no dialog for a crash
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  const Handle input(OpenInheritable(L"NUL", GENERIC_READ, OPEN_EXISTING));
  const Handle file(OpenInheritable(output.c_str(), FILE_APPEND_DATA, CREATE_ALWAYS));
  startup.hStdInput = input.value;
  startup.hStdOutput = file.value;
  startup.hStdError = file.value;
  const Handle job(CreateJob());
  PROCESS_INFORMATION child = {};
  const BOOL started = CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE,
                                      CREATE_SUSPENDED | CREATE_NEW_PROCESS_GROUP, nullptr,
                                      folder.c_str(), &startup, &child);
  if (!started) Refuse(program);
  const Handle process(child.hProcess);
  const Handle thread(child.hThread);
  AssignProcessToJobObject(job.value, process.value);
  ResumeThread(thread.value);

  const auto deadline = std::chrono::steady_clock::now() + limit;
  bool ended = false;
  while (!(ended = EndsWithin(process.value, std::chrono::milliseconds(20))) &&
         InterruptStatus() == 0 && std::chrono::steady_clock::now() < deadline) {
  }
  if (!ended) {
    TerminateJobObject(job.value, 1);
    WaitForSingleObject(process.value, INFINITE);
    return {InterruptStatus() == 0 ? ChildOutcome::End::TimedOut : ChildOutcome::End::Interrupted,
            0, ""};
  }
  DWORD status = 0;
  GetExitCodeProcess(process.value, &status);
  if (IsCrash(status)) {
    return {ChildOutcome::End::Crashed, 0, NameOfCrash(status)};
  }
  return {ChildOutcome::End::Exited, static_cast<int>(status), ""};
}

}  // namespace conduit
