#include "virtual_reader/session/ScanFolder.h"

#include <algorithm>
#include <map>
#include <set>
#include <system_error>

#include "virtual_reader/InputFile.h"
#include "virtual_reader/ReaderResult.h"
#include "virtual_reader/images/PageImage.h"

namespace conduit {
namespace {

/// The files, in the order of their names. Hidden ones are left out: some
/// systems keep notes of their own beside an image, under its name.
std::set<std::string> FilesIn(const std::filesystem::path& folder) {
  std::set<std::string> names;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const std::string name = Utf8FromPath(entry->path().filename());
    std::error_code goneMeanwhile;
    if (!name.starts_with('.') && entry->is_regular_file(goneMeanwhile)) {
      names.insert(name);
    }
  }
  if (error) {
    throw SessionError(ReaderResult::SessionUnreadable,
                       "the folder cannot be read: " + error.message());
  }
  return names;
}

}  // namespace

ScanFolder ListScans(const std::filesystem::path& folder) {
  ScanFolder result;
  std::map<std::string, std::string> texts;  // by stem
  for (const std::string& name : FilesIn(folder)) {
    const std::filesystem::path file = PathFromUtf8(name);
    if (IsImageName(file)) {
      result.scans.push_back({name, ""});
    } else if (HasExtension(file, {".txt"})) {
      texts.emplace(Utf8FromPath(file.stem()), name);
    }
  }
  if (result.scans.empty()) {
    throw SessionError(ReaderResult::SessionUnreadable,
                       "the folder has no image (.png, .jpg, .jpeg) to lay on the window");
  }
  std::set<std::string> paired;
  for (ScanFolder::Scan& scan : result.scans) {
    const std::string stem = Utf8FromPath(PathFromUtf8(scan.image).stem());
    if (const auto text = texts.find(stem); text != texts.end()) {
      scan.codeline = text->second;
      paired.insert(stem);
    }
  }
  for (const auto& [stem, name] : texts) {
    if (!paired.contains(stem)) {
      result.strayTexts.push_back(name);
    }
  }
  return result;
}

}  // namespace conduit
