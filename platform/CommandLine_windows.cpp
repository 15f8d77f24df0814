#include "platform/CommandLine_windows.h"

#include "platform/FilePath.h"

namespace conduit {
namespace {

/// Backslashes count only where a quote follows.
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

}  // namespace

std::wstring CommandLine(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments) {
  std::wstring line = Quoted(program.wstring());
  for (const std::string& argument : arguments) {
    line += L' ' + Quoted(PathFromUtf8(argument).wstring());
  }
  return line;
}

}  // namespace conduit
