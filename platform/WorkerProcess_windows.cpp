#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <vector>

#include "platform/CommandLine_windows.h"
#include "platform/FilePath.h"
#include "platform/WorkerProcess.h"

namespace conduit {
namespace {

/// Owns a handle.
class Handle {
 public:
  Handle() = default;
  ~Handle() { Close(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  void Close() {
    if (value != nullptr && value != INVALID_HANDLE_VALUE) CloseHandle(value);
    value = nullptr;
  }

  HANDLE value = nullptr;
};

[[noreturn]] void Refuse(const std::filesystem::path& program) {
  throw std::runtime_error("cannot start " + Utf8FromPath(program) + ": error " +
                           std::to_string(GetLastError()));
}

/// Limits the handles that a new process inherits to a list.
class InheritedHandles {
 public:
  explicit InheritedHandles(std::vector<HANDLE> given) : handles(std::move(given)) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    storage.resize(size);
    list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(storage.data());
    InitializeProcThreadAttributeList(list, 1, 0, &size);
    UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles.data(),
                              handles.size() * sizeof(HANDLE), nullptr, nullptr);
  }
  ~InheritedHandles() { DeleteProcThreadAttributeList(list); }
  InheritedHandles(const InheritedHandles&) = delete;
  InheritedHandles& operator=(const InheritedHandles&) = delete;

  LPPROC_THREAD_ATTRIBUTE_LIST list = nullptr;

 private:
  std::vector<HANDLE> handles;
  std::vector<char> storage;
};

}  // namespace

struct WorkerProcess::State {
  Handle process;
  Handle job;    ///< ends the process when closed, also by the end of this process
  Handle input;  ///< of the process
  Handle output;
};

WorkerProcess::WorkerProcess(const std::filesystem::path& program)
    : state(std::make_unique<State>()) {
  SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
  Handle itsInput;
  Handle itsOutput;
  Handle nowhere;
  if (CreatePipe(&itsInput.value, &state->input.value, &inheritable, 0) == 0 ||
      CreatePipe(&state->output.value, &itsOutput.value, &inheritable, 0) == 0) {
    Refuse(program);
  }
  SetHandleInformation(state->input.value, HANDLE_FLAG_INHERIT, 0);
  SetHandleInformation(state->output.value, HANDLE_FLAG_INHERIT, 0);
  nowhere.value = CreateFileW(L"NUL", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              &inheritable, OPEN_EXISTING, 0, nullptr);

  state->job.value = CreateJobObjectW(nullptr, nullptr);
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(state->job.value, JobObjectExtendedLimitInformation, &limits,
                          sizeof limits);

  const InheritedHandles inherited({itsInput.value, itsOutput.value, nowhere.value});
  STARTUPINFOEXW startup = {};
  startup.StartupInfo.cb = sizeof startup;
  startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
  startup.StartupInfo.hStdInput = itsInput.value;
  startup.StartupInfo.hStdOutput = itsOutput.value;
  startup.StartupInfo.hStdError = nowhere.value;
  startup.lpAttributeList = inherited.list;
  std::wstring line = CommandLine(program, {});
  PROCESS_INFORMATION started = {};
  if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE,
                     CREATE_SUSPENDED | CREATE_NO_WINDOW | CREATE_NEW_PROCESS_GROUP |
                         EXTENDED_STARTUPINFO_PRESENT,
                     nullptr, nullptr, &startup.StartupInfo, &started) == 0) {
    Refuse(program);
  }
  state->process.value = started.hProcess;
  AssignProcessToJobObject(state->job.value, started.hProcess);
  ResumeThread(started.hThread);
  CloseHandle(started.hThread);
}

WorkerProcess::~WorkerProcess() {
  Kill();
  WaitForEnd();
}

std::optional<std::size_t> WorkerProcess::Write(std::string_view bytes,
                                                std::chrono::milliseconds /*time*/) {
  constexpr std::size_t most = 1 << 20;
  DWORD taken = 0;
  return WriteFile(state->input.value, bytes.data(),
                   static_cast<DWORD>(std::min(bytes.size(), most)), &taken, nullptr) != 0
             ? std::optional<std::size_t>(taken)
             : std::nullopt;
}

std::optional<std::size_t> WorkerProcess::Read(char* bytes, std::size_t most,
                                               std::chrono::milliseconds time) {
  // An anonymous pipe does not support waiting.
  const auto deadline = std::chrono::steady_clock::now() + time;
  while (true) {
    DWORD ready = 0;
    if (PeekNamedPipe(state->output.value, nullptr, 0, nullptr, &ready, nullptr) == 0) {
      return std::nullopt;
    }
    if (ready > 0) {
      DWORD count = 0;
      const auto wanted = static_cast<DWORD>(std::min<std::size_t>(most, ready));
      return ReadFile(state->output.value, bytes, wanted, &count, nullptr) != 0
                 ? std::optional<std::size_t>(count)
                 : std::nullopt;
    }
    if (std::chrono::steady_clock::now() >= deadline) {
      return 0;
    }
    Sleep(1);
  }
}

void WorkerProcess::Kill() { TerminateJobObject(state->job.value, 1); }

std::chrono::milliseconds WorkerProcess::ProcessorTime() const {
  FILETIME created = {};
  FILETIME ended = {};
  FILETIME kernel = {};
  FILETIME user = {};
  if (GetProcessTimes(state->process.value, &created, &ended, &kernel, &user) == 0) {
    return {};
  }
  const auto count = [](const FILETIME& time) {
    return static_cast<long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
  };
  constexpr long long perMillisecond = 10'000;  // FILETIME counts units of 100 ns
  return std::chrono::milliseconds((count(kernel) + count(user)) / perMillisecond);
}

std::string WorkerProcess::WaitForEnd() {
  WaitForSingleObject(state->process.value, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(state->process.value, &status);
  char text[32];
  std::snprintf(text, sizeof text, "exit status 0x%lX", static_cast<unsigned long>(status));
  return text;
}

// The parent's job ends this process with the parent.
void BecomeWorker() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
}

}  // namespace conduit
