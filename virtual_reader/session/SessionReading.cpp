#include <set>
#include <stdexcept>
#include <system_error>

#include "virtual_reader/InputFile.h"
#include "virtual_reader/ReaderResult.h"
#include "virtual_reader/session/ScanFolder.h"
#include "virtual_reader/session/Session.h"
#include "virtual_reader/session/SessionField.h"
#include "virtual_reader/session/StepReading.h"

namespace conduit {
namespace {

using Json = SessionField::Json;

/// Images stand in files of their own, so a session is text of modest size.
constexpr std::uintmax_t LargestSession = std::uintmax_t{16} << 20;

/// Refuses a field that an object names twice, of which the parser would
/// silently keep one.
class DuplicateCheck {
 public:
  bool operator()(int depth, Json::parse_event_t event, const Json& parsed) {
    constexpr int depthOfSteps = 2;  // in the list that stands in the file's one object
    if (event == Json::parse_event_t::object_start) {
      step += depth == depthOfSteps ? 1 : 0;
      open.emplace_back();
    } else if (event == Json::parse_event_t::object_end) {
      open.pop_back();
    } else if (event == Json::parse_event_t::key && !open.back().insert(parsed).second) {
      const std::string place = step > 0 ? "step " + std::to_string(step) + ": " : "";
      throw SessionError(
          ReaderResult::SessionWrong,
          place + "the field \"" + parsed.get<std::string>() + "\" stands twice in one object");
    }
    return true;
  }

 private:
  std::vector<std::set<std::string>> open;
  int step = 0;
};

/// The library's message without its own error number: "line 3, column 5: ...".
std::string ReasonOf(const Json::exception& error) {
  const std::string text = error.what();
  const std::size_t line = text.find("line ");
  return "this is not JSON: " + text.substr(line != std::string::npos ? line : text.find("] ") + 2);
}

Json ParseJson(const std::string& text) {
  try {
    return Json::parse(text, DuplicateCheck());
  } catch (const Json::exception& error) {
    throw SessionError(ReaderResult::SessionMalformed, ReasonOf(error));
  }
}

std::string ReadSessionFile(const std::filesystem::path& file) {
  try {
    return ReadInputFile(file, LargestSession);
  } catch (const std::invalid_argument& reason) {
    throw SessionError(ReaderResult::SessionUnreadable, reason.what());
  }
}

Session ReadSteps(const std::filesystem::path& file) {
  const Json json = ParseJson(ReadSessionFile(file));
  const SessionField root(json, "");
  root.Fields({"steps"});
  StepReading reading(file.parent_path());
  constexpr std::size_t mostSteps = 1000000;
  std::size_t number = 0;
  for (const SessionField& step : root.Require("steps").Elements(0, mostSteps)) {
    reading.ReadStep(step.At("step " + std::to_string(++number)));
  }
  return reading.TakeSession();
}

Session ReadScans(const std::filesystem::path& folder) {
  const ScanFolder scans = ListScans(folder);
  StepReading reading(folder);
  for (const std::string& text : scans.strayTexts) {
    reading.Warn(text + ": there is no image of this name, so it is no codeline");
  }
  for (const ScanFolder::Scan& scan : scans.scans) {
    reading.ReadScan(scan.image, scan.codeline);
  }
  return reading.TakeSession();
}

}  // namespace

Session ReadSession(const std::filesystem::path& file) {
  try {
    std::error_code unreadable;  // which opening it as a file tells better
    return std::filesystem::is_directory(file, unreadable) ? ReadScans(file) : ReadSteps(file);
  } catch (const SessionError& error) {
    throw SessionError(error.result, Utf8FromPath(file) + ": " + error.what());
  }
}

}  // namespace conduit
