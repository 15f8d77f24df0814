#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "virtual_reader/session/Session.h"

namespace conduit {

struct MadeStep {
  Step step;
  const char* lost = nullptr;  ///< why there is no step: a static text
};

/// Makes the steps of a session ahead of the thread that plays them, on threads of its own, and
/// hands them out in the order of their documents. Bounds the number and the bytes of the steps
/// that are made and not yet played.
class LookAhead {
 public:
  /// @param make         reads the images of a document and makes its step [any thread]
  /// @param workerCount  threads, at least one
  LookAhead(std::unique_ptr<DocumentSource> source, std::function<Step(const Document&)> make,
            unsigned workerCount);
  /// Stops, and waits for the work under way.
  ~LookAhead();
  LookAhead(const LookAhead&) = delete;
  LookAhead& operator=(const LookAhead&) = delete;

  /// The next step, as soon as it is made. Nothing at the end of the session and
  /// after a stop. [one thread]
  std::optional<MadeStep> Take();

  /// Begins no more work, and lets Take return. [any thread]
  void RequestStop();

  /// The same, and waits for the work under way. [one thread]
  void Stop();

 private:
  /// A step that is being made, or is made and waits to be played.
  struct Place {
    MadeStep made;
    std::size_t bytes = 0;
    bool isMade = false;
  };
  struct Claim {
    Document document;
    Place* place;
  };

  void Work();
  MadeStep Make(const Document& document) const;
  std::optional<Claim> ClaimNext();
  std::optional<Claim> WaitForNext();
  bool HasRoom() const;

  const std::unique_ptr<DocumentSource> source;  ///< guarded by claiming
  std::deque<Document> next;  ///< guarded by claiming: from the source, unclaimed
  const std::function<Step(const Document&)> make;
  const std::size_t mostAhead;

  std::mutex claiming;  ///< held before mutex, so that places stand in the source's order
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<Place> ahead;     ///< guarded by mutex, but a step being made: by its claim
  std::size_t bytesAhead = 0;  ///< guarded by mutex
  bool complete = false;       ///< guarded by mutex: the source has no more
  bool broken = false;         ///< guarded by mutex: the source failed, which is not yet told
  bool stopped = false;        ///< guarded by mutex
  std::vector<std::thread> workers;
};

}  // namespace conduit
