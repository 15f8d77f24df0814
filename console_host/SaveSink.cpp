#include "console_host/SaveSink.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "console_host/UnfinishedFile.h"
#include "hosting/DataFormat.h"
#include "platform/FilePath.h"

namespace conduit {
namespace {

/// Well below what file systems take, with room for a number and an extension.
constexpr std::size_t LongestName = 100;

/// Names that open a device on Windows, whatever their extension.
constexpr std::string_view DeviceNames[] = {"con", "prn", "aux", "nul", "com", "lpt"};

bool IsLetterOrDigit(char character) {
  return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
         (character >= 'a' && character <= 'z');
}

std::string LowerCase(std::string text) {
  std::ranges::transform(text, text.begin(), [](char character) {
    return static_cast<char>(character >= 'A' && character <= 'Z' ? character + ('a' - 'A')
                                                                  : character);
  });
  return text;
}

/// A name that every file system takes and that stays within its folder.
std::string FileName(std::string name) {
  name.resize(std::min(name.size(), LongestName));
  std::ranges::replace_if(
      name, [](char character) { return !IsLetterOrDigit(character) && character != '-'; }, '_');
  if (name.empty()) {
    return "unnamed";
  }
  const std::string stem = LowerCase(name.substr(0, 3));
  const bool device =
      name.size() <= 4 && std::ranges::find(DeviceNames, stem) != std::end(DeviceNames);
  return device ? "_" + name : name;
}

/// Sorts in the order of the documents. What comes outside of the data has no number.
std::string FolderName(const Document& document) {
  char name[32];
  std::snprintf(name, sizeof name, "document-%05d", document.dataOpen ? document.number : 0);
  const bool named = document.dataOpen && !document.source.empty();
  return name + (named ? "-" + FileName(document.source) : "");
}

[[noreturn]] void Refuse(const std::filesystem::path& path, const std::string& reason) {
  throw std::runtime_error("cannot save to " + Utf8FromPath(path) + ": " + reason);
}

void CreateFolders(const std::filesystem::path& folder) {
  std::error_code problem;
  std::filesystem::create_directories(folder, problem);
  if (problem) {
    Refuse(folder, problem.message());
  }
}

/// Returns whether its folder holds nothing else.
bool IsAlone(const std::filesystem::path& entry, std::error_code& problem) {
  std::filesystem::directory_iterator other(entry.parent_path(), problem);
  for (; !problem && other != end(other); other.increment(problem)) {
    if (other->path().filename() != entry.filename()) {
      return false;
    }
  }
  return !problem;
}

}  // namespace

SaveSink::SaveSink(const std::filesystem::path& path)
    // A slash at the end would look behind a symbolic link.
    : folder(path.has_filename() ? path : path.parent_path()), claim(folder / FolderName({})) {
  std::error_code problem;
  if (std::filesystem::exists(folder, problem) && !std::filesystem::is_directory(folder, problem)) {
    Refuse(folder, "it is not a folder");
  }
  if (std::filesystem::is_symlink(folder, problem) && !BelongsToUserOrSystem(folder)) {
    Refuse(folder, "it is a symbolic link of another user");
  }
  CreateFolders(folder);
  // The claim comes before the look: of two runs that begin at once only one makes it.
  const bool isNew = std::filesystem::create_directory(claim, problem);
  if (isNew && IsAlone(claim, problem)) {
    return;
  }
  if (isNew) {
    std::error_code ignored;
    std::filesystem::remove(claim, ignored);
  }
  const bool cannotTell = problem && problem != std::errc::file_exists;
  Refuse(folder, cannotTell ? problem.message() : "the folder is not empty");
}

SaveSink::~SaveSink() {
  std::error_code holdsItems;
  std::filesystem::remove(claim, holdsItems);
}

void SaveSink::OnDataBegan(const Document& /*document*/) { inside.clear(); }

void SaveSink::OnItem(const ItemReceived& item) {
  if (!item.data) {
    return;
  }
  const std::filesystem::path file = NewFile(item);
  CreateFolders(file.parent_path());
  try {
    // A link to a folder passes for the folder, and who has made it reads along.
    if (!BelongsToUserOrSystem(file.parent_path())) {
      Refuse(file.parent_path(), "it belongs to another user");
    }
    UnfinishedFile output(file);
    output.Write(*item.data);
    if (!output.TakePlace(FileState())) {
      Refuse(file, "another program has made this file");
    }
  } catch (const std::system_error& problem) {
    Refuse(file, ReasonOf(problem.code()));
  }
}

std::filesystem::path SaveSink::NewFile(const ItemReceived& item) {
  const std::string name = FileName(item.name);
  const std::string extension(ReadsAsText(item.type, *item.data) ? ".txt"
                                                                 : FileExtension(*item.data));
  const bool isInside = item.belongsTo.dataOpen;
  NameCounts& counts = isInside ? inside : outside;
  int& count = counts[LowerCase(name)];
  std::filesystem::path file;
  for (bool isFree = false; !isFree;) {
    ++count;
    const std::string numbered = count == 1 ? name : name + "-" + std::to_string(count);
    file = folder / FolderName(item.belongsTo) / (numbered + extension);
    // An item may itself be named as the second of another is. What comes outside of
    // documents is not remembered, for there is no end of it.
    const bool isNew = count == 1 || !isInside || counts.emplace(LowerCase(numbered), 1).second;
    isFree = isNew && !std::filesystem::exists(std::filesystem::symlink_status(file));
  }
  return file;
}

}  // namespace conduit
