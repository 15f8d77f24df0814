#include "virtual_reader/pages/PageReaders.h"

#include <algorithm>
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

}  // namespace

/// The time that a process may take for a part of its work.
class PageReaders::TimeLimit {
 public:
  using Clock = std::chrono::steady_clock;

  explicit TimeLimit(milliseconds time, Clock::time_point latest = Clock::time_point::max())
      : time(time), clockEnd(std::min(latest, Clock::now() + ClockFactor * time)) {}

  /// The work begins: what the process did before does not count.
  void Begin(const WorkerProcess& process) { processorEnd = process.ProcessorTime() + time; }

  bool IsExceededBy(const WorkerProcess& process) const {
    return process.ProcessorTime() > processorEnd || Clock::now() > clockEnd;
  }
  milliseconds Time() const { return time; }

 private:
  milliseconds time;
  milliseconds processorEnd{0};
  Clock::time_point clockEnd;
};

/// One request, at a process that is this job's alone meanwhile.
class PageReaders::Job {
 public:
  /// Throws std::runtime_error when no process can be had.
  Job(PageReaders* readers, const TimeLimit& limit)
      : readers(readers), process(readers->TakeProcess()), limit(limit) {
    this->limit.Begin(*process);
  }
  ~Job() { readers->GiveBack(std::move(process), done); }
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  /// Hands each answer over until all is done.
  Outcome Run(const PageRequest& request, const std::function<void(PageAnswer)>& take) {
    const std::string fields = FieldsOf(request);
    const std::string head = HeadOf({fields.size(), request.bytes.size()});
    if (!Send(head) || !Send(fields) || !Send(request.bytes)) {
      return failure;
    }
    while (std::optional<PageMessage> message = Receive()) {
      PageAnswer answer = AnswerOf(std::move(*message));
      if (auto* const all = std::get_if<PageDone>(&answer)) {
        done = true;
        return {Outcome::End::Done, std::move(all->error)};
      }
      const auto* const image = std::get_if<PageDecoded>(&answer);
      if (image != nullptr && request.task == PageRequest::Task::ReadPage) {
        limit = TimeLimit(readers->budget.SearchingOf(image->width * image->height));
        limit.Begin(*process);
      }
      take(std::move(answer));
    }
    return failure;
  }

 private:
  std::optional<PageMessage> Receive() {
    std::string head;
    if (!Fill(&head, PageMessageHead)) {
      return {};
    }
    const PageMessageLengths lengths = LengthsOf(head);
    PageMessage message;
    if (!Fill(&message.fields, lengths.fields) || !Fill(&message.bytes, lengths.bytes)) {
      return {};
    }
    return message;
  }

  /// Returns false when the process does not take the bytes, and then has the reason.
  bool Send(std::string_view bytes) {
    while (!bytes.empty()) {
      const auto taken = process->Write(bytes, Interval);
      if (!GoesOn(taken)) {
        return false;
      }
      bytes.remove_prefix(*taken);
    }
    return true;
  }

  /// Returns false when the process does not deliver, and then has the reason.
  bool Fill(std::string* bytes, std::size_t count) {
    bytes->resize(count);
    for (std::size_t have = 0; have < count;) {
      const auto more = process->Read(bytes->data() + have, count - have, Interval);
      if (!GoesOn(more)) {
        return false;
      }
      have += *more;
    }
    return true;
  }

  bool GoesOn(const std::optional<std::size_t>& moved) {
    if (!moved) {
      failure = {Outcome::End::Crashed,
                 "the process that reads pages has ended: " + process->WaitForEnd()};
    } else if (limit.IsExceededBy(*process)) {
      failure = {Outcome::End::OverBudget,
                 "it takes longer than its budget of " + SecondsText(limit.Time())};
    } else {
      return true;
    }
    return false;
  }

  /// How long a budget may be exceeded before that is noticed.
  static constexpr milliseconds Interval{50};

  PageReaders* const readers;
  std::unique_ptr<WorkerProcess> process;
  TimeLimit limit;
  bool done = false;
  Outcome failure = {Outcome::End::Done, ""};
};

PageReaders::Outcome PageReaders::Work(const PageRequest& request, const TimeLimit& limit,
                                       const std::function<void(PageAnswer)>& take) {
  try {
    Job job(this, limit);
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
  const Outcome outcome = Work(request, TimeLimit(budget.decoding), [&](PageAnswer answer) {
    if (const auto* const image = std::get_if<PageDecoded>(&answer)) {
      decoded = true;
      reading.pages = image->pages;
    } else if (auto* const png = std::get_if<PagePng>(&answer)) {
      reading.png = std::move(png->bytes);
    } else if (auto* const codeline = std::get_if<CodelineFindings>(&answer)) {
      reading.codeline = std::move(*codeline);
    } else if (auto* const finding = std::get_if<PageFinding>(&answer)) {
      found.push_back(std::move(*finding));
    } else if (std::holds_alternative<PageSearched>(answer)) {
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
  const Outcome outcome =
      Work(request, TimeLimit(budget.decoding),
           [&count](const PageAnswer& answer) { count = std::get<PageDecoded>(answer).pages; });
  if (!outcome.reason.empty()) {
    throw std::invalid_argument(outcome.reason);
  }
  return count;
}

bool PageReaders::IsReadable(PageRequest request, std::chrono::steady_clock::time_point latest) {
  request.task = PageRequest::Task::CheckImage;
  const Outcome outcome =
      Work(request, TimeLimit(budget.decoding, latest), [](const PageAnswer& /*answer*/) {});
  return outcome.reason.empty() || outcome.end == Outcome::End::OverBudget;
}

std::vector<std::string> PageReaders::Limits() {
  PageRequest request;
  request.task = PageRequest::Task::DescribeLimits;
  std::vector<std::string> limits;
  const TimeLimit limit(budget.decoding, std::chrono::steady_clock::now() + budget.decoding);
  const Outcome outcome = Work(request, limit, [&limits](const PageAnswer& answer) {
    limits.push_back(std::get<PageLimit>(answer).text);
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
