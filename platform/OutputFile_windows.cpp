#include <windows.h>

#include <algorithm>
#include <system_error>
#include <utility>

#include "platform/OutputFile.h"

namespace conduit {
namespace {

HANDLE HandleOf(std::intptr_t number) { return reinterpret_cast<HANDLE>(number); }

[[noreturn]] void Fail(DWORD problem) {
  throw std::system_error(static_cast<int>(problem), std::system_category());
}

void Require(bool done) {
  if (!done) Fail(GetLastError());
}

std::intptr_t Open(const std::filesystem::path& file, DWORD creation, DWORD flags) {
  constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE handle =
      CreateFileW(file.c_str(), GENERIC_WRITE, shared, nullptr, creation, flags, nullptr);
  Require(handle != INVALID_HANDLE_VALUE);
  return reinterpret_cast<std::intptr_t>(handle);
}

std::uint64_t Joined(DWORD high, DWORD low) { return (std::uint64_t{high} << 32) | low; }

}  // namespace

OutputFile OutputFile::Create(const std::filesystem::path& file) {
  return OutputFile(Open(file, CREATE_NEW, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT));
}

OutputFile OutputFile::OpenStream(const std::filesystem::path& stream) {
  OutputFile file(Open(stream, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL));
  if (GetFileType(HandleOf(file.handle)) == FILE_TYPE_DISK) Fail(ERROR_FILE_EXISTS);
  return file;
}

OutputFile::OutputFile(OutputFile&& other) noexcept : handle(std::exchange(other.handle, -1)) {}

OutputFile::~OutputFile() {
  if (handle != -1) CloseHandle(HandleOf(handle));
}

void OutputFile::Write(std::string_view bytes) const {
  constexpr std::size_t most = 1U << 30;
  while (!bytes.empty()) {
    DWORD written = 0;
    const DWORD size = static_cast<DWORD>(std::min(bytes.size(), most));
    Require(WriteFile(HandleOf(handle), bytes.data(), size, &written, nullptr) != FALSE);
    bytes.remove_prefix(written);
  }
}

void OutputFile::Close() { Require(CloseHandle(HandleOf(std::exchange(handle, -1))) != FALSE); }

FileState StateOf(const std::filesystem::path& file) {
  constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  constexpr DWORD flags = FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT;
  const HANDLE handle = CreateFileW(file.c_str(), FILE_READ_ATTRIBUTES, shared, nullptr,
                                    OPEN_EXISTING, flags, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    Require(GetLastError() == ERROR_FILE_NOT_FOUND);
    return {};
  }
  BY_HANDLE_FILE_INFORMATION about = {};
  const bool known = GetFileInformationByHandle(handle, &about) != FALSE;
  const DWORD problem = GetLastError();
  CloseHandle(handle);
  if (!known) Fail(problem);
  return {about.dwVolumeSerialNumber, Joined(about.nFileIndexHigh, about.nFileIndexLow),
          Joined(about.nFileSizeHigh, about.nFileSizeLow),
          static_cast<std::int64_t>(
              Joined(about.ftLastWriteTime.dwHighDateTime, about.ftLastWriteTime.dwLowDateTime))};
}

/// Takes no lock: of two runs that end at the same time, the later one wins.
bool TakePlace(const std::filesystem::path& file, const std::filesystem::path& place,
               const FileState& expected) {
  const FileState present = StateOf(place);
  const bool isFree = present == FileState();
  if (!isFree && present != expected) return false;
  if (MoveFileExW(file.c_str(), place.c_str(), isFree ? 0 : MOVEFILE_REPLACE_EXISTING)) return true;
  const DWORD problem = GetLastError();
  if (isFree && (problem == ERROR_ALREADY_EXISTS || problem == ERROR_FILE_EXISTS)) return false;
  Fail(problem);
}

/// On Windows only an administrator creates symbolic links.
bool BelongsToUserOrSystem(const std::filesystem::path& /*file*/) { return true; }

}  // namespace conduit
