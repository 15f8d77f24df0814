#include "platform/CommandLine_windows.h"

#include <algorithm>

#include "platform/FilePath.h"

namespace conduit {
namespace {

constexpr std::wstring_view Blanks = L" \t";

/// Backslashes are escapes only before a quote.
std::wstring Quoted(const std::wstring& word) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t character : word) {
    if (character == L'"') {
      quoted.append(backslashes + 1, L'\\');
    }
    backslashes = character == L'\\' ? backslashes + 1 : 0;
    quoted += character;
  }
  return quoted.append(backslashes, L'\\') + L'"';
}

/// The name of a program contains no escapes.
std::wstring_view WithoutProgram(std::wstring_view line) {
  const bool quoted = line.starts_with(L'"');
  const std::size_t end = quoted ? line.find(L'"', 1) : line.find_first_of(Blanks);
  return end == std::wstring_view::npos ? L"" : line.substr(end + (quoted ? 1 : 0));
}

/// Removes the first word from the line and returns it.
std::wstring TakeWord(std::wstring_view& line) {
  std::wstring word;
  bool quoted = false;
  std::size_t at = 0;
  while (at < line.size() && (quoted || Blanks.find(line[at]) == std::wstring_view::npos)) {
    const std::size_t start = at;
    at = std::min(line.find_first_not_of(L'\\', at), line.size());
    const std::size_t backslashes = at - start;
    if (at == line.size() || line[at] != L'"') {
      word.append(backslashes, L'\\');
      if (backslashes == 0) {
        word += line[at++];
      }
      continue;
    }
    word.append(backslashes / 2, L'\\');
    const bool isDoubled = quoted && line.substr(at).starts_with(L"\"\"");
    if (backslashes % 2 == 1) {
      word += L'"';
    } else if (isDoubled) {
      word += L'"';
      ++at;
      quoted = false;
    } else {
      quoted = !quoted;
    }
    ++at;
  }
  line.remove_prefix(at);
  return word;
}

}  // namespace

std::vector<std::string> ArgumentsOf(std::wstring_view line) {
  std::vector<std::string> arguments;
  line = WithoutProgram(line);
  for (;;) {
    line.remove_prefix(std::min(line.find_first_not_of(Blanks), line.size()));
    if (line.empty()) {
      return arguments;
    }
    arguments.push_back(Utf8FromPath(TakeWord(line)));
  }
}

std::wstring CommandLine(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments) {
  std::wstring line = Quoted(program.wstring());
  for (const std::string& argument : arguments) {
    line += L' ' + Quoted(PathFromUtf8(argument).wstring());
  }
  return line;
}

}  // namespace conduit
