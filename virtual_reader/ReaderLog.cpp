#include "virtual_reader/ReaderLog.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iterator>
#include <utility>

#include "platform/FilePath.h"

namespace conduit {
namespace {

/// In UTC: the C++ library has it without a call of the system's own.
struct TimeText {
  TimeText() {
    using namespace std::chrono;
    const auto now = floor<milliseconds>(system_clock::now());
    const auto today = floor<days>(now);
    const year_month_day date = today;
    const hh_mm_ss time(now - today);
    std::snprintf(
        text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
        static_cast<int>(time.seconds().count()), static_cast<int>(time.subseconds().count()));
  }

  char text[64];
};

/// Collects a line, and writes it in pieces when it is longer than most.
class LineOutput {
 public:
  LineOutput(AppendedFile& file, bool patient) : file(file), patient(patient) { file.BeginLine(); }

  void append(const char* bytes, std::size_t size) {
    while (size > 0 && !problem) {
      const std::size_t taken = std::min(size, sizeof buffer - used);
      std::memcpy(buffer + used, bytes, taken);
      used += taken;
      bytes += taken;
      size -= taken;
      if (used == sizeof buffer) {
        Flush();
      }
    }
  }

  /// @returns why nothing of it is in the file.
  std::error_code Finish() {
    Flush();
    if (problem) {
      file.TakeBack();
    }
    return problem;
  }

 private:
  void Flush() {
    if (!problem) {
      problem = file.Append({buffer, used}, patient);
    }
    used = 0;
  }

  AppendedFile& file;
  const bool patient;
  std::error_code problem;
  // A pipe takes so much in one piece.
  char buffer[4096];
  std::size_t used = 0;
};

std::string Told(const std::string& name, const std::string& reason) {
  std::string text(ReaderLogErrorStart);
  return text.append(name).append(ReaderLogErrorMiddle).append(reason);
}

}  // namespace

ReaderResult ReaderLog::Open(std::int32_t level, std::int32_t mask, const char* file) {
  if (level < LogFailures || level > LogEverything) {
    return ReaderResult::LogLevelInvalid;
  }
  if (file == nullptr || *file == '\0') {
    return ReaderResult::LogNotOpened;
  }
  const std::lock_guard lock(mutex);
  if (std::string reason = output.Open(PathFromUtf8(file)); !reason.empty()) {
    refusedName = file;
    refusal = std::move(reason);
    return ReaderResult::LogNotOpened;
  }
  refusal.clear();
  if (name != file) {
    lostLines = 0;
    name = file;
  }
  shortage = {};
  highestLevel = mask != 0 ? level : -1;
  return ReaderResult::Success;
}

void ReaderLog::Close() {
  const std::lock_guard lock(mutex);
  output.Close();
  refusal.clear();
  shortage = {};
}

void ReaderLog::Release() {
  Close();
  const std::lock_guard lock(mutex);
  for (std::string* const text : {&name, &refusedName, &refusal}) {
    std::string().swap(*text);
  }
}

std::string ReaderLog::TakeTrouble() noexcept {
  try {
    const std::lock_guard lock(mutex);
    std::string told;
    if (!refusal.empty()) {
      told = Told(refusedName, refusal);
    } else if (shortage) {
      told = Told(name, shortage.message());
    }
    refusal.clear();
    shortage = {};
    return told;
  } catch (const std::exception&) {
    return {};
  }
}

void ReaderLog::Write(std::int32_t level, ReaderLogKind kind,
                      std::initializer_list<std::string_view> texts) {
  const std::lock_guard lock(mutex);
  if (!output.IsOpen() || level > highestLevel) {
    return;
  }
  const TimeText time;
  // Who has not kept up is not waited for again with each line.
  LineOutput line(output, lostLines == 0);
  if (lostLines > 0) {
    char digits[24];
    const char* const end = std::to_chars(digits, std::end(digits), lostLines).ptr;
    WriteReaderLogLine(line, time.text, LogFailures, ReaderLogKind::Warning,
                       {"lines of this log that could not be written and are missing here: ",
                        {digits, static_cast<std::size_t>(end - digits)}});
  }
  WriteReaderLogLine(line, time.text, level, kind, texts);
  if (const std::error_code problem = line.Finish(); !problem) {
    lostLines = 0;
  } else if (++lostLines == 1) {
    shortage = problem;
  }
}

}  // namespace conduit
