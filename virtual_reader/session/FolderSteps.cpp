#include "virtual_reader/session/FolderSteps.h"

#include <algorithm>
#include <utility>

#include "virtual_reader/ReaderResult.h"
#include "virtual_reader/session/DocumentImages.h"
#include "virtual_reader/session/ScanReading.h"

namespace conduit {
namespace {

class FolderSteps : public StepSource {
 public:
  FolderSteps(std::filesystem::path folder, std::vector<ScanFolder::Scan> scans)
      : folder(std::move(folder)), scans(std::move(scans)) {}

  std::optional<StepWork> Next() override {
    while (pages.empty()) {
      if (next == scans.size()) {
        return {};
      }
      pages = WorkOnScan(folder, scans[next++]);
    }
    StepWork page = std::move(pages.front());
    pages.pop_front();
    return page;
  }

 private:
  const std::filesystem::path folder;
  const std::vector<ScanFolder::Scan> scans;
  std::size_t next = 0;
  std::deque<StepWork> pages;  ///< of the file before the next
};

}  // namespace

Session ReadFolder(const std::filesystem::path& folder) {
  ScanFolder listed = ListScans(folder);
  const bool readable =
      std::any_of(listed.scans.begin(), listed.scans.end(),
                  [&folder](const ScanFolder::Scan& scan) { return IsReadable(folder, scan); });
  if (!readable) {
    throw SessionError(
        ReaderResult::SessionUnreadable,
        "the folder has no readable image (" + std::string(ImageNames) + ") to lay on the window");
  }
  Session session;
  session.remarks = LimitsOfPageReading();
  for (const ScanFolder::Unread& unread : listed.unread) {
    session.remarks.push_back(unread.name + ": not read: " + unread.reason);
  }
  session.steps = std::make_unique<FolderSteps>(folder, std::move(listed.scans));
  return session;
}

}  // namespace conduit
