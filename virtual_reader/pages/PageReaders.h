#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/WorkerProcess.h"
#include "virtual_reader/mrz/CodelineFindings.h"
#include "virtual_reader/pages/PageBudget.h"
#include "virtual_reader/pages/PageMessages.h"

namespace conduit {

/// What was read of one image.
struct PageReading {
  std::string error;      ///< why the image cannot be decoded; empty when it was
  std::string shortened;  ///< why the search ended early; empty when it did not
  bool searched = false;  ///< for barcodes, to the end
  std::size_t pages = 1;  ///< of a TIFF
  std::string png;        ///< of a TIFF's page: what is delivered in its place
  PageFindings barcodes;
  CodelineFindings codeline;
};

/// Has page images decoded and searched by processes of their own, as many as there are
/// threads that ask. What an image does to a decoder, a crash, a failed assertion or hours
/// of work, ends such a process and is told of the page. [any thread]
class PageReaders {
 public:
  /// Starts nothing yet.
  /// @param program  conduit-page-reader, as an absolute path
  explicit PageReaders(std::filesystem::path program, const PageBudget& budget = {})
      : program(std::move(program)), budget(budget) {}
  ~PageReaders() { Stop(); }
  PageReaders(const PageReaders&) = delete;
  PageReaders& operator=(const PageReaders&) = delete;

  /// Reads a page. What goes wrong with it is told in the result.
  PageReading Read(const PageRequest& request);

  /// The number of pages of a TIFF file. Throws std::invalid_argument with the reason when
  /// they cannot be listed.
  std::size_t CountPages(const std::string& file);

  /// Whether the image can be decoded, or the TIFF file has a page. One of which that
  /// is not known by `latest` counts as one that can.
  bool IsReadable(PageRequest request, std::chrono::steady_clock::time_point latest);

  /// What is not looked for on pages, for the log. Throws std::runtime_error when pages
  /// cannot be read at all, for the program cannot be started.
  std::vector<std::string> Limits();

  /// Ends the work under way at once, and does none from now on.
  void Stop();

 private:
  /// How the work on a request ended.
  struct Outcome {
    enum class End { Done, OverBudget, Crashed, NotStarted };
    End end;
    std::string reason;  ///< why not all was done; empty when all was
  };
  class TimeLimit;
  class Job;

  Outcome Work(const PageRequest& request, const TimeLimit& limit,
               const std::function<void(PageAnswer)>& take);
  std::unique_ptr<WorkerProcess> TakeProcess();
  void GiveBack(std::unique_ptr<WorkerProcess> process, bool reusable);

  const std::filesystem::path program;
  const PageBudget budget;

  std::mutex mutex;
  bool stopped = false;                              ///< guarded by mutex
  std::vector<std::unique_ptr<WorkerProcess>> idle;  ///< guarded by mutex
  std::vector<WorkerProcess*> busy;                  ///< guarded by mutex
};

}  // namespace conduit
