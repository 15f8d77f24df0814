#include "virtual_reader/pages/PageReaders.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <optional>
#include <stdexcept>
#include <utility>

namespace conduit {
namespace {

using std::chrono::milliseconds;

/// "5.3 s"
std::string SecondsText(milliseconds time) {
  const auto tenths = (time.count() + 50) / 100;
  return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " s";
}

/// The time that a process may still take.
class TimeLimit {
 public:
  TimeLimit(const WorkerProcess& process, milliseconds time)
      : time(time),
        latest(process.ProcessorTime() + time),
        clockEnd(std::chrono::steady_clock::now() + ClockFactor * time) {}

  bool IsExceededBy(const WorkerProcess& process) const {
    return process.ProcessorTime() > latest || std::chrono::steady_clock::now() > clockEnd;
  }
  milliseconds Time() const { return time; }

 private:
  milliseconds time;
  milliseconds latest;
  std::chrono::steady_clock::time_point clockEnd;
};

}  // namespace

/// One request, at a process that is this job's alone meanwhile.
class PageReaders::Job {
 public:
  /// Throws std::runtime_error when no process can be had.
  Job(PageReaders* readers, milliseconds time)
      : readers(readers), process(readers->TakeProcess()), limit(*process, time) {}
  ~Job() { readers->GiveBack(std::move(process), done); }
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  /// Hands each answer over until all is done.
  Outcome Run(const PageRequest& request, const std::function<void(PageMessage)>& take) {
    // One that has ended tells it when it is read.
    static_cast<void>(process->Write(HeadOf(FieldsOf(request), request.bytes.size())) &&
                      process->Write(request.bytes));
    while (true) {
      std::optional<PageMessage> message = Receive();
      if (!message) {
        return failure;
      }
      const std::string kind = message->fields.at("kind").get<std::string>();
      if (kind == PageAnswer::Done) {
        done = true;
        return {Outcome::End::Done, message->fields.at("error").get<std::string>()};
      }
      if (kind == PageAnswer::Decoded) {
        const std::int64_t pixels = message->fields.at("width").get<std::int64_t>() *
                                    message->fields.at("height").get<std::int64_t>();
        limit = TimeLimit(*process, readers->budget.SearchingOf(pixels));
      }
      take(std::move(*message));
    }
  }

 private:
  std::optional<PageMessage> Receive() {
    std::string text;
    if (!Fill(&text, PageMessageHead)) {
      return {};
    }
    const PageMessageLengths lengths = LengthsOf(text);
    PageMessage message;
    if (!Fill(&text, lengths.fields) || !Fill(&message.bytes, lengths.bytes)) {
      return {};
    }
    message.fields = ParseFields(text);
    return message;
  }

  /// Returns false when the process does not deliver, and then has the reason.
  bool Fill(std::string* bytes, std::size_t count) {
    // How long a budget may be exceeded before that is noticed.
    constexpr milliseconds interval(50);
    bytes->resize(count);
    for (std::size_t have = 0; have < count;) {
      const auto more = process->Read(bytes->data() + have, count - have, interval);
      if (!more) {
        failure = {Outcome::End::Crashed,
                   "the process that reads pages has ended: " + process->WaitForEnd()};
        return false;
      }
      have += *more;
      if (limit.IsExceededBy(*process)) {
        failure = {Outcome::End::OverBudget,
                   "it takes longer than its budget of " + SecondsText(limit.Time())};
        return false;
      }
    }
    return true;
  }

  PageReaders* const readers;
  std::unique_ptr<WorkerProcess> process;
  TimeLimit limit;
  bool done = false;
  Outcome failure = {Outcome::End::Done, ""};
};

PageReaders::Outcome PageReaders::Work(const PageRequest& request, milliseconds time,
                                       const std::function<void(PageMessage)>& take) {
  try {
    Job job(this, time);
    try {
      return job.Run(request, take);
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& problem) {
      return {Outcome::End::Crashed,
              std::string("the process that reads pages is not understood: ") + problem.what()};
    }
  } catch (const std::runtime_error& problem) {
    return {Outcome::End::NotStarted, problem.what()};
  }
}

PageReading PageReaders::Read(const PageRequest& request) {
  PageReading reading;
  std::vector<PageFinding> found;
  bool decoded = false;
  const Outcome outcome = Work(request, budget.decoding, [&](PageMessage message) {
    const std::string kind = message.fields.at("kind").get<std::string>();
    if (kind == PageAnswer::Decoded) {
      decoded = true;
      reading.pages = message.fields.at("pages").get<std::size_t>();
    } else if (kind == PageAnswer::Png) {
      reading.png = std::move(message.bytes);
    } else if (kind == PageAnswer::Codeline) {
      message.fields.at("lines").get_to(reading.codeline.lines);
      message.fields.at("failures").get_to(reading.codeline.failures);
    } else if (kind == PageAnswer::Barcode) {
      found.push_back(FindingOf(std::move(message)));
    } else if (kind == PageAnswer::Searched) {
      reading.searched = true;
    }
  });
  (decoded ? reading.shortened : reading.error) = outcome.reason;
  reading.barcodes = ArrangeFindings(std::move(found));
  return reading;
}

std::size_t PageReaders::CountPages(const std::string& file) {
  PageRequest request;
  request.task = PageRequest::Task::CountPages;
  request.file = file;
  std::size_t count = 0;
  const Outcome outcome = Work(request, budget.decoding, [&count](const PageMessage& message) {
    count = message.fields.at("pages").get<std::size_t>();
  });
  if (!outcome.reason.empty()) {
    throw std::invalid_argument(outcome.reason);
  }
  return count;
}

bool PageReaders::IsReadable(PageRequest request) {
  request.task = PageRequest::Task::CheckImage;
  const Outcome outcome = Work(request, budget.checking, [](const PageMessage& /*message*/) {});
  return outcome.reason.empty() || outcome.end == Outcome::End::OverBudget;
}

std::vector<std::string> PageReaders::Limits() {
  PageRequest request;
  request.task = PageRequest::Task::DescribeLimits;
  std::vector<std::string> limits;
  const Outcome outcome = Work(request, budget.decoding, [&limits](const PageMessage& message) {
    limits.push_back(message.fields.at("text").get<std::string>());
  });
  if (!outcome.reason.empty()) {
    throw std::runtime_error("page images cannot be read: " + outcome.reason);
  }
  return limits;
}

void PageReaders::Stop() {
  const std::lock_guard lock(mutex);
  stopped = true;
  for (WorkerProcess* const process : busy) {
    process->Kill();
  }
  idle.clear();
}

std::unique_ptr<WorkerProcess> PageReaders::TakeProcess() {
  const std::lock_guard lock(mutex);
  if (stopped) {
    throw std::runtime_error("the reader is stopped");
  }
  std::unique_ptr<WorkerProcess> process;
  while (!idle.empty() && process == nullptr) {
    process = std::move(idle.back());
    idle.pop_back();
    char unasked = 0;
    if (process->Read(&unasked, 1, milliseconds(0)) != std::size_t{0}) {
      process.reset();  // somebody has ended it meanwhile
    }
  }
  if (process == nullptr) {
    process = std::make_unique<WorkerProcess>(program);
  }
  busy.push_back(process.get());
  return process;
}

void PageReaders::GiveBack(std::unique_ptr<WorkerProcess> process, bool reusable) {
  const std::lock_guard lock(mutex);
  std::erase(busy, process.get());
  if (reusable && !stopped) {
    idle.push_back(std::move(process));
  }
}

}  // namespace conduit
