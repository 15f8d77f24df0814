#include "virtual_reader/ReaderLog.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <utility>

#include "platform/FilePath.h"

namespace conduit {
namespace {

/// ISO 8601, in UTC: the C++ library has it without a call of the system's own.
std::string TimeText() {
  using namespace std::chrono;
  const auto now = floor<milliseconds>(system_clock::now());
  const auto today = floor<days>(now);
  const year_month_day date = today;
  const hh_mm_ss time(now - today);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
                static_cast<int>(time.subseconds().count()));
  return text;
}

/// Keeps one message on one line, whatever a session puts into an error text.
std::string OnOneLine(std::string_view text) {
  std::string line(text);
  std::replace_if(
      line.begin(), line.end(), [](unsigned char c) { return c < ' '; }, ' ');
  return line;
}

}  // namespace

ReaderResult ReaderLog::Open(std::int32_t level, std::int32_t mask, const char* file) {
  if (level < LogFailures || level > LogEverything) {
    return ReaderResult::LogLevelInvalid;
  }
  if (file == nullptr || *file == '\0') {
    return ReaderResult::LogNotOpened;
  }
  std::ofstream opened(PathFromUtf8(file), std::ios::app);
  const std::lock_guard lock(mutex);
  if (!opened) {
    refusal = std::string("the log file \"") + file + "\" cannot be written";
    return ReaderResult::LogNotOpened;
  }
  refusal.clear();
  stream = std::move(opened);
  highestLevel = mask != 0 ? level : -1;
  return ReaderResult::Success;
}

void ReaderLog::Close() {
  const std::lock_guard lock(mutex);
  stream = {};
  refusal.clear();
}

std::string ReaderLog::TakeRefusal() {
  const std::lock_guard lock(mutex);
  return std::exchange(refusal, {});
}

void ReaderLog::Write(std::int32_t level, std::string_view text) {
  const std::lock_guard lock(mutex);
  if (stream.is_open() && level <= highestLevel) {
    stream << TimeText() << ' ' << level << ' ' << OnOneLine(text) << std::endl;
  }
}

}  // namespace conduit
