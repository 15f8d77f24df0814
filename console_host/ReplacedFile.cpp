#include "console_host/ReplacedFile.h"

#include <fstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "platform/FilePath.h"

namespace conduit {
namespace {

using std::filesystem::file_type;

bool IsLink(const std::filesystem::path& file) {
  std::error_code none;
  return std::filesystem::is_symlink(std::filesystem::symlink_status(file, none));
}

}  // namespace

ReplacedFile::ReplacedFile(std::string what, const std::filesystem::path& file,
                           std::string_view start)
    : what(std::move(what)), file(file), place(file) {
  Try([&] { Open(start); });
}

void ReplacedFile::Write(std::string_view text) {
  Try([&] {
    if (stream) {
      stream->Write(text);
    } else {
      unfinished->Write(text);
      unfinished->Keep();
    }
  });
}

void ReplacedFile::Complete() {
  Try([&] {
    if (stream) {
      stream->Close();
    } else if (!unfinished->TakePlace(earlier)) {
      Refuse("it has changed since this run began, perhaps by another run");
    }
  });
}

void ReplacedFile::Try(const std::function<void()>& step) const {
  try {
    step();
  } catch (const std::system_error& problem) {
    if (problem.code() == std::errc::operation_canceled) {
      Refuse("its reader took nothing while this program was asked to end");
    }
    Refuse(ReasonOf(problem.code()));
  }
}

void ReplacedFile::Open(std::string_view start) {
  FollowLinks();
  std::error_code none;
  switch (std::filesystem::status(place, none).type()) {
    case file_type::directory:
      Refuse("it is a folder");
    case file_type::regular:
      earlier = StateOf(place);
      RequireReplaceable(start);
      unfinished.emplace(place);
      break;
    case file_type::not_found:
      unfinished.emplace(place);
      break;
    default:  // or it cannot be looked at, of which opening says why
      OpenStream();
  }
}

void ReplacedFile::FollowLinks() {
  constexpr int most = 40;  // as many as the system itself follows
  for (int links = 0; IsLink(place) && links < most; ++links) {
    RequireTrusted("a symbolic link");
    const std::filesystem::path next = place.parent_path() / std::filesystem::read_symlink(place);
    // The links of /dev/fd name their pipes by a text that is no path.
    if (!std::filesystem::exists(std::filesystem::symlink_status(next)) &&
        std::filesystem::exists(place)) {
      return;
    }
    place = next;
  }
}

void ReplacedFile::OpenStream() {
  RequireTrusted("a device or a pipe");
  try {
    stream.emplace(OutputFile::OpenStream(place));
  } catch (const std::system_error& problem) {
    if (problem.code() == std::errc::no_such_device_or_address && std::filesystem::is_fifo(place)) {
      Refuse("no program reads from this pipe");
    }
    throw;
  }
}

void ReplacedFile::RequireTrusted(const char* kind) const {
  if (!BelongsToUserOrSystem(place)) {
    Refuse(std::string("it is ") + kind + " of another user");
  }
}

void ReplacedFile::Refuse(const std::string& reason) const {
  std::string text = "cannot write " + what + " " + Utf8FromPath(file) + ": " + reason;
  if (unfinished && unfinished->IsKept()) {
    text += "; what was written is kept in " + Utf8FromPath(unfinished->Path());
  }
  throw std::runtime_error(text);
}

void ReplacedFile::RequireReplaceable(std::string_view start) const {
  std::string present(start.size(), '\0');
  std::ifstream input(place, std::ios::binary);
  if (!input) {
    Refuse("the file exists and cannot be read");
  }
  input.read(present.data(), static_cast<std::streamsize>(present.size()));
  if (input.gcount() > 0 && present != start) {
    Refuse("the file exists and is no " + what);
  }
}

}  // namespace conduit
