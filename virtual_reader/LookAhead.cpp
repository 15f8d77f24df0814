#include "virtual_reader/LookAhead.h"

#include <chrono>
#include <exception>
#include <new>
#include <string>
#include <utility>

namespace conduit {
namespace {

/// How often a source that has nothing yet is asked again.
constexpr std::chrono::milliseconds PollInterval(200);

/// Beyond this, nothing new is begun until something was played: page images of
/// 600 dpi have up to a hundred million bytes.
constexpr std::size_t MostBytesAhead = std::size_t{64} << 20;

/// Steps take unequal times: with as many again as are being made, a slow one
/// does not keep the other workers waiting.
constexpr std::size_t StepsForEachWorker = 2;

std::size_t BytesOf(const Step& step) {
  std::size_t bytes = 0;
  for (const StepAction& action : step) {
    if (const auto* const item = std::get_if<SendItem>(&action); item != nullptr) {
      bytes += item->bytes.size();
    }
  }
  return bytes;
}

constexpr const char* NoMemory = "the system has no memory left for a step of the session";
constexpr const char* SourceFailed = "the session ends early: the system has no memory left";

}  // namespace

LookAhead::LookAhead(std::unique_ptr<DocumentSource> source,
                     std::function<Step(const Document&)> make, unsigned workerCount)
    : source(std::move(source)),
      make(std::move(make)),
      mostAhead(StepsForEachWorker * workerCount) {
  try {
    while (workers.size() < workerCount) {
      workers.emplace_back([this] { Work(); });
    }
  } catch (...) {
    Stop();
    throw;
  }
}

LookAhead::~LookAhead() { Stop(); }

void LookAhead::RequestStop() {
  const std::lock_guard lock(mutex);
  stopped = true;
  changed.notify_all();
}

void LookAhead::Stop() {
  RequestStop();
  for (std::thread& worker : workers) {
    worker.join();
  }
  workers.clear();
}

std::optional<MadeStep> LookAhead::Take() {
  std::unique_lock lock(mutex);
  changed.wait(lock,
               [this] { return stopped || (ahead.empty() ? complete : ahead.front().isMade); });
  if (stopped) {
    return {};
  }
  if (ahead.empty()) {
    return std::exchange(broken, false) ? std::optional(MadeStep{{}, SourceFailed}) : std::nullopt;
  }
  MadeStep made = std::move(ahead.front().made);
  bytesAhead -= ahead.front().bytes;
  ahead.pop_front();
  changed.notify_all();
  return made;
}

void LookAhead::Work() {
  while (const std::optional<Claim> claim = ClaimNext()) {
    MadeStep made = Make(claim->document);
    const std::lock_guard lock(mutex);
    claim->place->bytes = BytesOf(made.step);
    bytesAhead += claim->place->bytes;
    claim->place->made = std::move(made);
    claim->place->isMade = true;
    changed.notify_all();
  }
}

/// Errors of images are part of the step; only out-of-memory is expected here.
MadeStep LookAhead::Make(const Document& document) const {
  try {
    try {
      return {make(document)};
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      MadeStep failed;
      AddPassingError(&failed.step,
                      std::string("a step of the session cannot be played: ") + error.what());
      return failed;
    }
  } catch (...) {
    return {{}, NoMemory};
  }
}

bool LookAhead::HasRoom() const {
  return ahead.empty() || (ahead.size() < mostAhead && bytesAhead < MostBytesAhead);
}

std::optional<LookAhead::Claim> LookAhead::ClaimNext() {
  const std::lock_guard order(claiming);
  try {
    return WaitForNext();
  } catch (...) {
    const std::lock_guard lock(mutex);
    complete = true;
    broken = true;
    changed.notify_all();
    return {};
  }
}

std::optional<LookAhead::Claim> LookAhead::WaitForNext() {
  std::unique_lock lock(mutex);
  while (true) {
    changed.wait(lock, [this] { return stopped || complete || HasRoom(); });
    if (stopped || complete) {
      return {};
    }
    lock.unlock();
    if (next.empty()) {
      next = source->Next();
    }
    lock.lock();
    if (!next.empty()) {
      Claim claim = {std::move(next.front()), &ahead.emplace_back()};
      next.pop_front();
      return claim;
    }
    if (!source->CanGrow()) {
      complete = true;
      changed.notify_all();
      return {};
    }
    changed.wait_for(lock, PollInterval, [this] { return stopped; });
  }
}

}  // namespace conduit
