#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace conduit {

/// What is written to, by the system's own means. Each operation throws a
/// std::system_error with the reason.
class OutputFile {
 public:
  /// Creates a file for this user alone. Fails when anything has the name, be it a
  /// symbolic link to nothing.
  static OutputFile Create(const std::filesystem::path& file);

  /// Opens a device or a pipe, which exists. Does not wait for a reader of the pipe:
  /// fails when there is none. Fails for a regular file.
  static OutputFile OpenStream(const std::filesystem::path& stream);

  OutputFile(OutputFile&& other) noexcept;
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  OutputFile& operator=(OutputFile&&) = delete;

  /// Writes all of it. Waits for who reads a pipe, on POSIX systems until this process is
  /// asked to end (see Interrupt.h): then fails when the reader takes nothing for a moment.
  void Write(std::string_view bytes) const;

  /// Closes it. What the system could not keep of earlier writes may show only here.
  void Close();

 private:
  explicit OutputFile(std::intptr_t handle) : handle(handle) {}

  std::intptr_t handle;  ///< the system's; -1 when it is closed
};

/// Which file has a name, and as of when: equal while nobody has replaced or written it.
/// All zeros when there is none.
struct FileState {
  std::uint64_t volume = 0;
  std::uint64_t number = 0;
  std::uint64_t size = 0;
  std::int64_t written = 0;

  bool operator==(const FileState&) const = default;
};

/// Does not follow a symbolic link.
FileState StateOf(const std::filesystem::path& file);

/// Renames `file` to `place`, where it replaces the file that was there in the state
/// `expected`. Throws a std::system_error when the system refuses.
/// @returns false, and renames nothing, when another file is there than expected.
bool TakePlace(const std::filesystem::path& file, const std::filesystem::path& place,
               const FileState& expected);

/// Returns whether what has the name belongs to this user or to the system: of a symbolic
/// link, the link itself.
bool BelongsToUserOrSystem(const std::filesystem::path& file);

}  // namespace conduit
