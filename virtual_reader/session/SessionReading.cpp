#include <memory>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "platform/FilePath.h"
#include "platform/SessionLocation.h"
#include "virtual_reader/InputFile.h"
#include "virtual_reader/ReaderResult.h"
#include "virtual_reader/session/FolderSteps.h"
#include "virtual_reader/session/PageSession.h"
#include "virtual_reader/session/Session.h"
#include "virtual_reader/session/SessionField.h"
#include "virtual_reader/session/StepReading.h"

namespace conduit {
namespace {

using Json = SessionField::Json;

/// Images stand in files of their own, so a session is text of modest size.
constexpr std::uintmax_t LargestSession = std::uintmax_t{16} << 20;

/// Deeper than the date of a codeline, the deepest field; each level costs memory.
constexpr int DeepestField = 16;

/// Refuses, while the file is read, a field that an object names twice, of which
/// the parser would silently keep one, and what stands too deep.
class StructureCheck {
 public:
  bool operator()(int depth, Json::parse_event_t event, const Json& parsed) {
    if (depth > DeepestField) {
      throw SessionError(
          ReaderResult::SessionMalformed,
          "lists and objects stand in each other deeper than any field of a session");
    }
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
    return Json::parse(text, StructureCheck());
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

class FileSteps : public StepSource {
 public:
  explicit FileSteps(std::vector<StepWork> steps) : steps(std::move(steps)) {}

  std::optional<StepWork> Next() override {
    return next < steps.size() ? std::optional(std::move(steps[next++])) : std::nullopt;
  }

 private:
  std::vector<StepWork> steps;
  std::size_t next = 0;
};

Session ReadFile(const std::filesystem::path& file) {
  const Json json = ParseJson(ReadSessionFile(file));
  const SessionField root(json, "");
  root.Fields({"steps"});
  Session session;
  session.readers = MakePageReaders();
  StepReading reading(file.parent_path(), session.readers);
  constexpr std::size_t mostSteps = 1000000;
  std::vector<StepWork> steps;
  for (const SessionField& step : root.Require("steps").Elements(0, mostSteps)) {
    steps.push_back(reading.ReadStep(step.At("step " + std::to_string(steps.size() + 1))));
  }
  session.steps = std::make_unique<FileSteps>(std::move(steps));
  if (reading.HasImages()) {
    RemarkLimits(&session);
  }
  return session;
}

}  // namespace

Session ReadSession(const std::filesystem::path& location) {
  const std::string name = Utf8FromPath(location);
  try {
    if (name.starts_with(WatchPrefix)) {
      return WatchFolder(PathFromUtf8(name.substr(WatchPrefix.size())));
    }
    std::error_code unreadable;  // which opening it as a file tells better
    return std::filesystem::is_directory(location, unreadable) ? ReadFolder(location)
                                                               : ReadFile(location);
  } catch (const SessionError& error) {
    throw SessionError(error.result, name + ": " + error.what());
  }
}

}  // namespace conduit
