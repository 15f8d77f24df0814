#include <windows.h>

#include <cstdint>
#include <stdexcept>

#include "platform/ExportedNames.h"

namespace conduit {

std::vector<std::string> ExportedNames(const std::filesystem::path& file) {
  const auto* image = reinterpret_cast<const std::byte*>(GetModuleHandleW(file.c_str()));
  if (!image) throw std::runtime_error("the library is not loaded");
  const auto at = [image](DWORD offset) { return static_cast<const void*>(image + offset); };

  const auto* dos = static_cast<const IMAGE_DOS_HEADER*>(at(0));
  const auto* headers = static_cast<const IMAGE_NT_HEADERS*>(at(static_cast<DWORD>(dos->e_lfanew)));
  const IMAGE_DATA_DIRECTORY& entry =
      headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
  if (entry.Size == 0) return {};

  const auto* directory = static_cast<const IMAGE_EXPORT_DIRECTORY*>(at(entry.VirtualAddress));
  const auto* offsets = static_cast<const DWORD*>(at(directory->AddressOfNames));
  std::vector<std::string> names;
  for (DWORD i = 0; i < directory->NumberOfNames; ++i) {
    names.emplace_back(static_cast<const char*>(at(offsets[i])));
  }
  return names;
}

}  // namespace conduit
