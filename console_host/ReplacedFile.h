#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "console_host/UnfinishedFile.h"
#include "platform/OutputFile.h"

namespace conduit {

/// A file that is written beside the one of an earlier run and takes its place when it
/// is complete: until then both are there. A device or a pipe has no place to take, and
/// is written to at once. Every failure throws a std::runtime_error that names the file
/// and the reason, and where the written part is kept.
///
/// A symbolic link stays and leads to the new file. A link or a pipe of another user is
/// refused, for it may lead anywhere.
class ReplacedFile {
 public:
  /// @param what   "report"
  /// @param start  what an earlier one begins with: a file that begins otherwise is not
  ///               replaced, for it may be what a forgotten name leaves in its place
  ReplacedFile(std::string what, const std::filesystem::path& file, std::string_view start);

  /// Nothing remains in a buffer.
  void Write(std::string_view text);

  /// Nothing is written after it. Fails when the earlier file has been replaced or written
  /// since this began, for what is in it now nobody has seen.
  void Complete();

 private:
  [[noreturn]] void Refuse(const std::string& reason) const;
  void Try(const std::function<void()>& step) const;
  void Open(std::string_view start);
  void FollowLinks();
  void OpenStream();
  void RequireTrusted(const char* kind) const;
  void RequireReplaceable(std::string_view start) const;

  const std::string what;
  const std::filesystem::path file;
  std::filesystem::path place;  ///< the file, or what it is a link to
  FileState earlier;
  std::optional<UnfinishedFile> unfinished;
  std::optional<OutputFile> stream;
};

}  // namespace conduit
