#include <windows.h>

#include <stdexcept>

#include "platform/CommandLine_windows.h"
#include "tests/support/StartedProgram.h"

namespace {

constexpr EndRequest Requests[] = {{"Ctrl-C", CTRL_C_EVENT, 130},
                                   {"Ctrl-Break", CTRL_BREAK_EVENT, 130},
                                   {"the console's window is closed", CTRL_CLOSE_EVENT, 130},
                                   {"a log-off", CTRL_LOGOFF_EVENT, 130},
                                   {"a shutdown", CTRL_SHUTDOWN_EVENT, 130}};

HANDLE Create(const std::filesystem::path& file) {
  SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
  return CreateFileW(file.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                     &inheritable, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

std::span<const EndRequest> EndRequests() { return Requests; }

struct StartedProgram::Process {
  HANDLE handle;
};

StartedProgram::StartedProgram(const std::filesystem::path& program,
                               const std::vector<std::string>& arguments,
                               const std::filesystem::path& output,
                               const std::filesystem::path& trouble)
    : process(std::make_unique<Process>()) {
  std::wstring line = conduit::CommandLine(program, arguments);
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = Create(output);
  startup.hStdError = Create(trouble);
  PROCESS_INFORMATION child = {};
  const BOOL started = CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0,
                                      nullptr, nullptr, &startup, &child);
  CloseHandle(startup.hStdOutput);
  CloseHandle(startup.hStdError);
  if (!started) {
    throw std::runtime_error("cannot start " + program.string());
  }
  CloseHandle(child.hThread);
  process->handle = child.hProcess;
}

StartedProgram::~StartedProgram() { CloseHandle(process->handle); }

bool StartedProgram::HasEnded() const {
  return WaitForSingleObject(process->handle, 0) == WAIT_OBJECT_0;
}

/// Windows lets a program send only two of these events, and only to its whole console. So
/// this imitates the system: it starts a thread in the program at CtrlRoutine, which calls
/// the program's handlers. After the other events it waits for the handlers and ends the
/// program.
void StartedProgram::Ask(const EndRequest& request) const {
  const auto tellHandlers = reinterpret_cast<LPTHREAD_START_ROUTINE>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernelbase"), "CtrlRoutine")));
  const HANDLE thread = CreateRemoteThread(
      process->handle, nullptr, 0, tellHandlers,
      reinterpret_cast<void*>(static_cast<std::intptr_t>(request.number)), 0, nullptr);
  if (!thread) return;  // the program has ended
  if (request.number != CTRL_C_EVENT && request.number != CTRL_BREAK_EVENT) {
    constexpr DWORD patience = 20000;
    WaitForSingleObject(thread, patience);
    DWORD returned = 0;
    GetExitCodeThread(thread, &returned);
    // All threads of an ended program have its exit status.
    const bool endsByItself = static_cast<int>(returned) == request.status;
    if (!endsByItself) TerminateProcess(process->handle, returned);
  }
  CloseHandle(thread);
}

int StartedProgram::Wait() {
  WaitForSingleObject(process->handle, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(process->handle, &status);
  return static_cast<int>(status);
}
