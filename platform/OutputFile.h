#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace conduit {

/// An output file or stream, by the system's own calls. Each operation throws
/// std::system_error with the reason.
class OutputFile {
 public:
  /// Creates a file that only this user can access. Fails when the name exists, even as
  /// a dangling symbolic link.
  static OutputFile Create(const std::filesystem::path& file);

  /// Opens an existing device or pipe. Does not block: fails when the pipe has no reader.
  /// Fails for a regular file.
  static OutputFile OpenStream(const std::filesystem::path& stream);

  OutputFile(OutputFile&& other) noexcept;
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  OutputFile& operator=(OutputFile&&) = delete;

  /// Writes all bytes; blocks while a pipe is full. On POSIX systems, once this process is
  /// asked to end (see Interrupt.h), fails when the pipe stays full for half a second.
  void Write(std::string_view bytes) const;

  /// Closes it. A failure of an earlier write may be reported only here.
  void Close();

 private:
  explicit OutputFile(std::intptr_t handle) : handle(handle) {}

  std::intptr_t handle;  ///< of the system; -1 when closed
};

/// Identifies a file and its version: equal while the file is neither replaced nor
/// written. All zeros when there is no file.
struct FileState {
  std::uint64_t volume = 0;
  std::uint64_t number = 0;
  std::uint64_t size = 0;
  std::int64_t written = 0;

  bool operator==(const FileState&) const = default;
};

/// Returns the state of a file. Does not follow a symbolic link.
FileState StateOf(const std::filesystem::path& file);

/// Renames `file` to `place` if the file there has the state `expected`. Throws
/// std::system_error when the system refuses.
/// @returns false, and renames nothing, when the state differs.
bool TakePlace(const std::filesystem::path& file, const std::filesystem::path& place,
               const FileState& expected);

/// Returns whether this user or the system owns the file. Does not follow a symbolic link.
bool BelongsToUserOrSystem(const std::filesystem::path& file);

}  // namespace conduit
