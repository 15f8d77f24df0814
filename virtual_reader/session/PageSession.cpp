#include "virtual_reader/session/PageSession.h"

#include <stdexcept>

#include "platform/Process.h"
#include "virtual_reader/ReaderResult.h"

namespace conduit {
namespace {

/// Beside the library, wherever that is.
std::filesystem::path PageReaderProgram() {
  return FileOfCode(reinterpret_cast<const void*>(&PageReaderProgram)).parent_path() /
         PAGE_READER_PROGRAM;
}

}  // namespace

std::shared_ptr<PageReaders> MakePageReaders() {
  return std::make_shared<PageReaders>(PageReaderProgram());
}

void RemarkLimits(Session* session) {
  try {
    const std::vector<std::string> limits = session->readers->Limits();
    session->remarks.insert(session->remarks.end(), limits.begin(), limits.end());
  } catch (const std::runtime_error& problem) {
    throw SessionError(ReaderResult::Failed, problem.what());
  }
}

}  // namespace conduit
