#include "hosting/ReaderLogFile.h"

#include <string_view>
#include <system_error>
#include <utility>

#include "hosting/TemporaryFolder.h"
#include "platform/FilePath.h"
#include "platform/MemoryFile.h"
#include "platform/StandardStreams.h"
#include <conduit/ReaderLogLine.h>

namespace conduit {
namespace {

ReaderLine Warning(std::optional<std::int32_t> level, std::string text) {
  return {level, "warning: " + text, "", std::move(text)};
}

/// Takes off the time, which the host's own lines do not have either. A line of another
/// reader library stays as it is.
ReaderLine LineOf(std::string text) {
  std::optional<ReaderLogLine> line = ParseReaderLogLine(text);
  if (!line) {
    return {std::nullopt, std::move(text), ""};
  }
  switch (line->kind) {
    case ReaderLogKind::Document:
      return {line->level, "document " + line->text, line->text};
    case ReaderLogKind::Warning:
      return Warning(line->level, std::move(line->text));
    case ReaderLogKind::Note:
      break;
  }
  return {line->level, std::move(line->text), ""};
}

}  // namespace

struct ReaderLogFile::Own {
  std::unique_ptr<MemoryFile> memory = MemoryFile::Create();
  std::optional<TemporaryFolder> folder;  ///< where there is no such memory
};

ReaderLogFile::ReaderLogFile(const std::filesystem::path& file) : file(file) {
  std::error_code noneYet;
  const std::uintmax_t size = std::filesystem::file_size(file, noneYet);
  position = noneYet ? 0 : static_cast<std::streamoff>(size);
}

ReaderLogFile::ReaderLogFile() : own(std::make_shared<Own>()) {
  file = own->memory ? own->memory->path : own->folder.emplace().path / "reader.log";
}

bool ReaderLogFile::Open(std::vector<ReaderLine>& lines) {
  if (stream.is_open() || refused) {
    return !refused;
  }
  std::error_code problem;
  const std::filesystem::file_type type = std::filesystem::status(file, problem).type();
  if (type == std::filesystem::file_type::not_found) {
    return false;
  }
  const char* reason = "";
  if (type != std::filesystem::file_type::regular) {
    reason = "it is not a regular file";
  } else if (IsStandardStream(file)) {
    reason = "this program writes its own output into it";
  } else {
    stream.open(file, std::ios::binary);
    return stream.is_open();
  }
  refused = true;
  lines.push_back(Warning(
      std::nullopt, "the reader's log " + Utf8FromPath(file) + " is not followed, as " + reason));
  return false;
}

std::vector<ReaderLine> ReaderLogFile::NewLines() {
  std::vector<ReaderLine> lines;
  if (!Open(lines)) {
    return lines;
  }
  stream.exceptions(std::ios::badbit);  // else what there is no memory for ends the file
  stream.clear();
  stream.seekg(position);
  for (std::string line; std::getline(stream, line) && !stream.eof();) {
    position = stream.tellg();
    if (line.ends_with('\r')) {
      line.pop_back();
    }
    lines.push_back(LineOf(std::move(line)));
  }
  if (own && own->memory) {
    own->memory->Release(static_cast<std::uint64_t>(position));
  }
  return lines;
}

}  // namespace conduit
