#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace conduit {

/// A file, a terminal or a pipe that lines are appended to, each of them whole.
///
/// A line may be written in pieces: BeginLine, any number of Append, and TakeBack when one of
/// them failed. Nothing of it but Open allocates memory.
class AppendedFile {
 public:
  AppendedFile() = default;
  ~AppendedFile() { Close(); }
  AppendedFile(const AppendedFile&) = delete;
  AppendedFile& operator=(const AppendedFile&) = delete;

  /// Opens the file, in place of the one before. Does not wait: a pipe that nobody reads is
  /// refused.
  /// @returns why it cannot be written, and keeps the one before; empty on success.
  std::string Open(const std::filesystem::path& file);
  void Close();
  bool IsOpen() const { return descriptor >= 0; }

  void BeginLine();

  /// Appends all of the bytes. A pipe whose reader does not keep up is waited for a moment
  /// at most.
  /// @param patient  false to not wait at all
  std::error_code Append(std::string_view bytes, bool patient);

  /// Takes back what was appended since BeginLine. Where that cannot be, as in a pipe, the
  /// next line begins on a line of its own.
  void TakeBack();

 private:
  int descriptor = -1;
  bool regular = false;
  bool torn = false;  ///< what is there last is a part of a line
  std::int64_t lineStart = 0;
  std::int64_t lineLength = 0;
};

}  // namespace conduit
