#include <windows.h>
// After windows.h, whose types it uses.
#include <tlhelp32.h>

#include "platform/ProcessResources.h"

namespace conduit {

ProcessResources ResourcesInUse() {
  DWORD handles = 0;
  GetProcessHandleCount(GetCurrentProcess(), &handles);
  std::size_t threads = 0;
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry = {};
  entry.dwSize = sizeof entry;
  for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry)) {
    if (entry.th32OwnerProcessID == GetCurrentProcessId()) ++threads;
  }
  CloseHandle(snapshot);
  return {threads, handles};
}

std::vector<int> ChildProcesses() {
  std::vector<int> children;
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32W entry = {};
  entry.dwSize = sizeof entry;
  for (BOOL more = Process32FirstW(snapshot, &entry); more;
       more = Process32NextW(snapshot, &entry)) {
    if (entry.th32ParentProcessID == GetCurrentProcessId()) {
      children.push_back(static_cast<int>(entry.th32ProcessID));
    }
  }
  CloseHandle(snapshot);
  return children;
}

// A job ends orphans instead; see ChildProcess_windows.cpp.
void AdoptOrphans() {}

bool IsReadable(const void* data, std::size_t size) {
  const char* at = static_cast<const char*>(data);
  const char* const end = at + size;
  while (at < end) {
    MEMORY_BASIC_INFORMATION region = {};
    constexpr DWORD unreadable = PAGE_NOACCESS | PAGE_GUARD;
    if (VirtualQuery(at, &region, sizeof region) == 0 || region.State != MEM_COMMIT ||
        (region.Protect & unreadable) != 0) {
      return false;
    }
    at = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
  }
  return true;
}

}  // namespace conduit
