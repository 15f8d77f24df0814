#include "virtual_reader/session/ScanFolder.h"

#include <map>
#include <set>
#include <system_error>

#include "platform/FilePath.h"
#include "virtual_reader/ReaderResult.h"
#include "virtual_reader/images/ImageFormat.h"

namespace conduit {
namespace {

/// Why an entry is no file to read; empty for a file.
std::string ReasonAgainst(const std::filesystem::directory_entry& entry) {
  std::error_code error;
  switch (entry.status(error).type()) {
    case std::filesystem::file_type::regular:
      return "";
    case std::filesystem::file_type::directory:
      return "it is a folder";
    case std::filesystem::file_type::not_found:
      return "it is a link that leads nowhere";
    case std::filesystem::file_type::none:
      return "the system cannot say what it is: " + error.message();
    default:
      return "it is no file";
  }
}

/// The entries, in the order of their names, and why one is no file. Hidden ones
/// are left out: some systems keep notes of their own beside an image, under its
/// name.
std::map<std::string, std::string> EntriesOf(const std::filesystem::path& folder) {
  std::map<std::string, std::string> entries;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const std::string name = Utf8FromPath(entry->path().filename());
    if (!name.starts_with('.')) {
      entries.emplace(name, ReasonAgainst(*entry));
    }
  }
  if (error) {
    throw SessionError(ReaderResult::SessionUnreadable,
                       "the folder cannot be read: " + error.message());
  }
  return entries;
}

std::string StemOf(const std::string& name) { return Utf8FromPath(PathFromUtf8(name).stem()); }

}  // namespace

ScanFolder ListScans(const std::filesystem::path& folder) {
  ScanFolder result;
  std::map<std::string, std::string> texts;  // by stem
  for (const auto& [name, reason] : EntriesOf(folder)) {
    const std::filesystem::path file = PathFromUtf8(name);
    if (!reason.empty()) {
      result.unread.push_back({name, reason});
    } else if (IsImageName(file)) {
      result.scans.push_back({name, ""});
    } else if (!HasExtension(file, {".txt"})) {
      result.unread.push_back({name, "its name is not that of an image (" +
                                         std::string(ImageNames) + ") or of a text (.txt)"});
    } else if (!texts.emplace(StemOf(name), name).second) {
      result.unread.push_back({name, "there is another text of this name"});
    }
  }
  std::set<std::string> paired;
  for (ScanFolder::Scan& scan : result.scans) {
    const std::string stem = StemOf(scan.image);
    if (const auto text = texts.find(stem); text != texts.end()) {
      scan.text = text->second;
      paired.insert(stem);
    }
  }
  for (const auto& [stem, name] : texts) {
    if (!paired.contains(stem)) {
      result.unread.push_back({name, "there is no image of this name, so it is no codeline"});
    }
  }
  return result;
}

}  // namespace conduit
