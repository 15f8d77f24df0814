#include <memory>
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
#include "virtual_reader/session/SessionJson.h"
#include "virtual_reader/session/StepReading.h"

namespace conduit {
namespace {

/// Images stand in files of their own, so a session is text of modest size.
constexpr std::uintmax_t LargestSession = std::uintmax_t{16} << 20;

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
  const SessionField::Json json = ParseSessionJson(ReadSessionFile(file));
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
