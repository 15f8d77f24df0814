#include "tests/support/Journal.h"

#include <cstdio>
#include <utility>

#include <conduit/ResultCode.h>

namespace conduit {

void Journal::Write(std::string line) {
  const std::lock_guard lock(mutex);
  lines.push_back(std::move(line));
}

std::vector<std::string> Journal::Take() {
  const std::lock_guard lock(mutex);
  return std::exchange(lines, {});
}

std::string Escape(std::string_view bytes) {
  std::string escaped;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= 0x20 && byte < 0x7F) {
      escaped += character;
    } else {
      char number[5];
      std::snprintf(number, sizeof number, "\\x%02X", byte);
      escaped += number;
    }
  }
  return escaped;
}

void RecordingLogger::Log(std::int32_t level, const char* tag, const char* message) {
  journal.Write("log " + std::to_string(level) + " " + tag + ": " + Escape(message));
}

std::int32_t RecordingHost::SendData(const char* name, ItemType itemType, std::int32_t length,
                                     const void* data, IStringMap* properties, bool last) {
  constexpr std::int32_t shown = 300;  // enough for any text of the tests
  std::string line = std::string("SendData ") + name + " " + std::to_string(itemType) + " " +
                     std::to_string(length);
  if (itemType == ItemTypeText && length <= shown) {
    line += " '" + Escape({static_cast<const char*>(data), static_cast<std::size_t>(length)}) + "'";
  }
  if (properties != nullptr) {
    line += std::string(" feature=") + properties->Get("feature");
  }
  journal.Write(line + (last ? " last" : " more"));
  lastData = data;
  if (stopAt != name) {
    return otherAnswer;
  }
  onStop();
  return StopRecord;
}

void RecordingHost::SendEvent(const char* name) { journal.Write(std::string("SendEvent ") + name); }

void RecordingHost::BeginData() { journal.Write("BeginData"); }

void RecordingHost::EndData() { journal.Write("EndData"); }

std::int32_t RecordingHost::SetActiveScript(const char* name) {
  journal.Write(std::string("SetActiveScript ") + name);
  onScript();
  return failingScript == name ? 7 : 0;
}

void RecordingHost::ReportState(const char* text) {
  journal.Write(std::string("ReportState '") + text + "'");
}

void RecordingHost::ReportError(const char* text) {
  journal.Write(std::string("ReportError '") + text + "'");
}

}  // namespace conduit
