#include "virtual_reader/session/FolderSession.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "virtual_reader/ReaderResult.h"
#include "virtual_reader/session/PageSession.h"
#include "virtual_reader/session/ScanDocuments.h"

namespace conduit {
namespace {

/// Looking for a readable image holds the start of the reader, which cannot be stopped.
constexpr std::chrono::milliseconds LongestCheck(700);

class ListedFolder : public DocumentSource {
 public:
  ListedFolder(std::filesystem::path folder, std::vector<ScanFolder::Scan> scans,
               std::shared_ptr<PageReaders> readers)
      : folder(std::move(folder)), scans(std::move(scans)), readers(std::move(readers)) {}

  std::deque<Document> Next() override {
    return next < scans.size() ? DocumentsOf(folder, scans[next++], readers.get())
                               : std::deque<Document>();
  }

 private:
  const std::filesystem::path folder;
  const std::vector<ScanFolder::Scan> scans;
  const std::shared_ptr<PageReaders> readers;
  std::size_t next = 0;
};

}  // namespace

Session ReadFolder(const std::filesystem::path& folder) {
  ScanFolder listed = ListScans(folder);
  Session session;
  session.readers = MakePageReaders();
  RemarkLimits(&session);
  const auto latest = std::chrono::steady_clock::now() + LongestCheck;
  const bool readable =
      std::any_of(listed.scans.begin(), listed.scans.end(), [&](const ScanFolder::Scan& scan) {
        return std::chrono::steady_clock::now() > latest ||
               IsReadable(folder, scan, session.readers.get(), latest);
      });
  if (!readable) {
    throw SessionError(
        ReaderResult::SessionUnreadable,
        "the folder has no readable image (" + std::string(ImageNames) + ") to lay on the window");
  }
  for (const ScanFolder::Unread& unread : listed.unread) {
    session.remarks.push_back(unread.name + ": not read: " + unread.reason);
  }
  session.documents =
      std::make_unique<ListedFolder>(folder, std::move(listed.scans), session.readers);
  return session;
}

}  // namespace conduit
