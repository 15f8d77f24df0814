#include <windows.h>

#include "platform/StandardStreams.h"

namespace conduit {
namespace {

bool Identify(HANDLE file, BY_HANDLE_FILE_INFORMATION& information) {
  return file != nullptr && file != INVALID_HANDLE_VALUE &&
         GetFileInformationByHandle(file, &information) != 0;
}

}  // namespace

bool IsStandardStream(const std::filesystem::path& file) {
  constexpr DWORD everySharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE opened = CreateFileW(file.c_str(), FILE_READ_ATTRIBUTES, everySharing, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  BY_HANDLE_FILE_INFORMATION wanted = {};
  bool same = false;
  if (Identify(opened, wanted)) {
    for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
      BY_HANDLE_FILE_INFORMATION own = {};
      same = same || (Identify(GetStdHandle(stream), own) &&
                      own.dwVolumeSerialNumber == wanted.dwVolumeSerialNumber &&
                      own.nFileIndexHigh == wanted.nFileIndexHigh &&
                      own.nFileIndexLow == wanted.nFileIndexLow);
    }
  }
  if (opened != INVALID_HANDLE_VALUE) {
    CloseHandle(opened);
  }
  return same;
}

}  // namespace conduit
