#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "platform/AppendedFile.h"

namespace conduit {

std::string AppendedFile::Open(const std::filesystem::path& file) {
  constexpr int flags = _O_WRONLY | _O_APPEND | _O_CREAT | _O_BINARY | _O_NOINHERIT;
  const int opened = _wopen(file.c_str(), flags, _S_IREAD | _S_IWRITE);
  if (opened < 0) {
    return std::generic_category().message(errno);
  }
  Close();
  descriptor = opened;
  struct _stat64 status = {};
  regular = _fstat64(opened, &status) == 0 && (status.st_mode & _S_IFMT) == _S_IFREG;
  return "";
}

void AppendedFile::Close() {
  if (IsOpen()) {
    _close(std::exchange(descriptor, -1));
  }
  torn = false;
}

void AppendedFile::BeginLine() {
  lineStart = regular ? _filelengthi64(descriptor) : 0;
  lineLength = 0;
}

std::error_code AppendedFile::Append(std::string_view bytes, bool patient) {
  if (torn) {
    torn = false;
    if (const std::error_code problem = Append("\n", patient)) {
      torn = true;
      return problem;
    }
  }
  while (!bytes.empty()) {
    const int written = _write(descriptor, bytes.data(), static_cast<unsigned>(bytes.size()));
    if (written <= 0) {
      return {written < 0 ? errno : ENOSPC, std::generic_category()};
    }
    lineLength += written;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return {};
}

void AppendedFile::TakeBack() {
  if (lineLength == 0) {
    return;
  }
  // Keeps lines that another process has appended since.
  const bool last = regular && _filelengthi64(descriptor) == lineStart + lineLength;
  torn = !last || _chsize_s(descriptor, lineStart) != 0;
  lineLength = 0;
}

}  // namespace conduit
