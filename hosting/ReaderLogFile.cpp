#include "hosting/ReaderLogFile.h"

#include <string_view>
#include <system_error>

namespace conduit {
namespace {

constexpr std::string_view DocumentStart = "document ";

/// Takes the time off, which the host's own lines do not have either. A line of
/// another form than "2024-05-01T09:30:00.120Z 1 text" is that of another library
/// and stays as it is.
ReaderLine LineOf(std::string text) {
  constexpr std::string_view form = "dddd-dd-ddTdd:dd:dd.dddZ d ";
  bool fits = text.size() >= form.size();
  for (std::size_t i = 0; fits && i < form.size(); ++i) {
    fits = form[i] == 'd' ? text[i] >= '0' && text[i] <= '9' : text[i] == form[i];
  }
  if (!fits) {
    return {std::nullopt, std::move(text), ""};
  }
  const std::int32_t level = text[form.size() - 2] - '0';
  text.erase(0, form.size());
  const std::string document =
      text.starts_with(DocumentStart) ? text.substr(DocumentStart.size()) : std::string();
  return {level, std::move(text), document};
}

}  // namespace

ReaderLogFile::ReaderLogFile(const std::filesystem::path& file) : file(file) {
  std::error_code noneYet;
  const std::uintmax_t size = std::filesystem::file_size(file, noneYet);
  position = noneYet ? 0 : static_cast<std::streamoff>(size);
}

std::vector<ReaderLine> ReaderLogFile::NewLines() {
  std::vector<ReaderLine> lines;
  if (!stream.is_open()) {
    stream.open(file, std::ios::binary);
  }
  stream.clear();
  stream.seekg(position);
  for (std::string line; std::getline(stream, line) && !stream.eof();) {
    position = stream.tellg();
    if (line.ends_with('\r')) {
      line.pop_back();
    }
    lines.push_back(LineOf(std::move(line)));
  }
  return lines;
}

}  // namespace conduit
