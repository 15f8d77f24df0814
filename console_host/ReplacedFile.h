#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace conduit {

/// A file that is written beside the one of an earlier run and takes its place when it
/// is complete: until then both are there. A device or a pipe has no place to take, and
/// is written to at once. Every failure throws a std::runtime_error that names the file
/// and the reason.
class ReplacedFile {
 public:
  /// @param what   "report"
  /// @param start  what an earlier one begins with: a file that begins otherwise is not
  ///               replaced, for it may be what a forgotten name leaves in its place
  ReplacedFile(std::string what, const std::filesystem::path& file, std::string_view start);

  /// Writes and flushes.
  void Write(std::string_view text);

  /// Nothing is written after it.
  void Complete();

 private:
  [[noreturn]] void Refuse(const std::string& reason) const;
  void RequireReplaceable(std::string_view start) const;

  const std::string what;
  const std::filesystem::path file;
  std::filesystem::path unfinished;
  std::ofstream output;
};

}  // namespace conduit
