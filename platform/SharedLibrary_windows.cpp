#include <windows.h>

#include <stdexcept>
#include <string>

#include "platform/FilePath.h"
#include "platform/SharedLibrary.h"

namespace conduit {
namespace {

/// MinGW's std::system_category knows few of the system's codes and does not fill in
/// inserts: "%1 is not a valid Win32 application."
std::string Explained(DWORD problem, const std::filesystem::path& file) {
  const std::wstring name = file.filename().wstring();
  DWORD_PTR inserts[] = {reinterpret_cast<DWORD_PTR>(name.c_str())};
  wchar_t text[512];
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_ARGUMENT_ARRAY, nullptr,
                                problem, 0, text, 512, reinterpret_cast<va_list*>(inserts));
  while (length > 0 && text[length - 1] <= L' ') {
    --length;  // the system ends its sentences with a line end
  }
  return Utf8FromPath(std::wstring(text, length)) + " (error " + std::to_string(problem) + ")";
}

}  // namespace

SharedLibrary::SharedLibrary(const std::filesystem::path& file)
    // The flag makes the system search dependencies beside the file.
    : handle(LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
  if (!handle) {
    throw std::runtime_error(Explained(GetLastError(), file));
  }
}

SharedLibrary::~SharedLibrary() { FreeLibrary(static_cast<HMODULE>(handle)); }

void* SharedLibrary::FindAddress(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle), name));
}

}  // namespace conduit
