#include <algorithm>
#include <deque>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "platform/FilePath.h"
#include "platform/SessionLocation.h"
#include "virtual_reader/InputFile.h"
#include "virtual_reader/ReaderResult.h"
#include "virtual_reader/session/DocumentParsing.h"
#include "virtual_reader/session/FolderSession.h"
#include "virtual_reader/session/PageSession.h"
#include "virtual_reader/session/Session.h"
#include "virtual_reader/session/SessionField.h"
#include "virtual_reader/session/SessionJson.h"

namespace conduit {
namespace {

/// Images stand in files of their own, so a session is text of modest size.
constexpr std::uintmax_t LargestSession = std::uintmax_t{16} << 20;

std::string ReadSessionFile(const std::filesystem::path& file) {
  try {
    return ReadInputFile(file, LargestSession);
  } catch (const std::invalid_argument& reason) {
    throw SessionError(ReaderResult::SessionUnreadable, reason.what());
  }
}

class ListedDocuments : public DocumentSource {
 public:
  explicit ListedDocuments(std::deque<Document> documents) : documents(std::move(documents)) {}

  std::deque<Document> Next() override { return std::exchange(documents, {}); }

 private:
  std::deque<Document> documents;
};

bool HasPageImage(const Document& document) {
  return std::any_of(document.parts.begin(), document.parts.end(), [](const DocumentPart& part) {
    const auto* const files = std::get_if<std::vector<ImageFile>>(&part);
    return files != nullptr && !files->empty() &&
           files->front().type != ReaderDataType::ChipDataGroup2Photo;
  });
}

Session ReadFile(const std::filesystem::path& file) {
  const SessionField::Json json = ParseSessionJson(ReadSessionFile(file));
  const SessionField root(json, "");
  root.Fields({"steps"});
  constexpr std::size_t mostSteps = 1000000;
  std::deque<Document> documents;
  for (const SessionField& step : root.Require("steps").Elements(0, mostSteps)) {
    const std::string place = "step " + std::to_string(documents.size() + 1);
    documents.push_back(ParseStep(step.At(place), file.parent_path()));
  }
  Session session;
  session.readers = MakePageReaders();
  if (std::any_of(documents.begin(), documents.end(), HasPageImage)) {
    RemarkLimits(&session);
  }
  session.documents = std::make_unique<ListedDocuments>(std::move(documents));
  return session;
}

}  // namespace

Session ReadSession(const std::filesystem::path& location) {
  const std::string name = Utf8FromPath(location);
  try {
    if (name.starts_with(WatchPrefix)) {
      return WatchFolder(PathFromUtf8(name.substr(WatchPrefix.size())));
    }
    std::error_code unreadable;  // which opening it as a file tells better
    return std::filesystem::is_directory(location, unreadable) ? ReadFolder(location)
                                                               : ReadFile(location);
  } catch (const SessionError& error) {
    throw SessionError(error.result, name + ": " + error.what());
  }
}

}  // namespace conduit
