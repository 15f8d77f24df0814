#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace conduit {

/// Appends whole lines to a file, a terminal or a pipe.
///
/// A line may be written in pieces: BeginLine, any number of Append, and TakeBack when an
/// Append failed. Only Open allocates memory.
class AppendedFile {
 public:
  AppendedFile() = default;
  ~AppendedFile() { Close(); }
  AppendedFile(const AppendedFile&) = delete;
  AppendedFile& operator=(const AppendedFile&) = delete;

  /// Opens a file and closes the previous one. Does not block: refuses a pipe without a
  /// reader.
  /// @returns the empty text, or the reason of the failure; the previous file then stays
  ///          open.
  std::string Open(const std::filesystem::path& file);
  void Close();
  bool IsOpen() const { return descriptor >= 0; }

  void BeginLine();

  /// Appends all bytes. Waits at most 100 ms for a pipe that is full.
  /// @param patient  false: does not wait
  std::error_code Append(std::string_view bytes, bool patient);

  /// Removes the bytes appended since BeginLine. Where that is impossible, as in a pipe,
  /// the next Append writes a line end first.
  void TakeBack();

 private:
  int descriptor = -1;
  bool regular = false;
  bool torn = false;  ///< the output ends in an incomplete line
  std::int64_t lineStart = 0;
  std::int64_t lineLength = 0;
};

}  // namespace conduit
