#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "platform/Interrupt.h"
#include "platform/OutputFile.h"

namespace conduit {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : number(number) {}
  ~Descriptor() {
    if (number >= 0) {
      close(number);
    }
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  const int number;
};

[[noreturn]] void Fail(int problem) { throw std::system_error(problem, std::generic_category()); }

void Require(bool done) {
  if (!done) {
    Fail(errno);
  }
}

FileState StateOf(const struct stat& status) {
  constexpr std::int64_t nanoseconds = 1'000'000'000;
  return {status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size),
          status.st_mtim.tv_sec * nanoseconds + status.st_mtim.tv_nsec};
}

/// Waits half a second for room in a pipe. Throws when there is none and this process was
/// asked to end.
void WaitForRoom(int descriptor) {
  constexpr int moment = 500;  // milliseconds
  pollfd room = {descriptor, POLLOUT, 0};
  if (poll(&room, 1, moment) == 0 && InterruptStatus() != 0) {
    Fail(ECANCELED);
  }
}

bool RenameToFreeName(const char* file, const char* place) {
  if (renameat2(AT_FDCWD, file, AT_FDCWD, place, RENAME_NOREPLACE) == 0) {
    return true;
  }
  if (errno == EINVAL) {  // the file system does not support RENAME_NOREPLACE
    struct stat present = {};
    if (lstat(place, &present) == 0) {
      return false;
    }
    Require(rename(file, place) == 0);
    return true;
  }
  Require(errno == EEXIST);
  return false;
}

}  // namespace

OutputFile OutputFile::Create(const std::filesystem::path& file) {
  const int descriptor =
      open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
  Require(descriptor >= 0);
  return OutputFile(descriptor);
}

OutputFile OutputFile::OpenStream(const std::filesystem::path& stream) {
  const int descriptor = open(stream.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  Require(descriptor >= 0);
  OutputFile file(descriptor);
  struct stat status = {};
  Require(fstat(descriptor, &status) == 0);
  if (S_ISREG(status.st_mode)) {
    Fail(EEXIST);
  }
  return file;
}

OutputFile::OutputFile(OutputFile&& other) noexcept : handle(std::exchange(other.handle, -1)) {}

OutputFile::~OutputFile() {
  if (handle >= 0) {
    close(static_cast<int>(handle));
  }
}

void OutputFile::Write(std::string_view bytes) const {
  const int descriptor = static_cast<int>(handle);
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {
      WaitForRoom(descriptor);
    } else {
      Require(errno == EINTR);
    }
  }
}

void OutputFile::Close() {
  const int descriptor = static_cast<int>(std::exchange(handle, -1));
  // Linux closes the descriptor even when close is interrupted.
  Require(close(descriptor) == 0 || errno == EINTR);
}

FileState StateOf(const std::filesystem::path& file) {
  struct stat status = {};
  if (lstat(file.c_str(), &status) == 0) {
    return StateOf(status);
  }
  Require(errno == ENOENT);
  return {};
}

/// Locks the file that it replaces: of two concurrent runs, each would see it unchanged.
bool TakePlace(const std::filesystem::path& file, const std::filesystem::path& place,
               const FileState& expected) {
  const Descriptor present(open(place.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (present.number < 0) {
    Require(errno == ENOENT);
    return RenameToFreeName(file.c_str(), place.c_str());
  }
  const bool underWay = flock(present.number, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  struct stat status = {};
  Require(fstat(present.number, &status) == 0);
  if (underWay || StateOf(status) != expected || StateOf(place) != expected) {
    return false;
  }
  Require(rename(file.c_str(), place.c_str()) == 0);
  return true;
}

bool BelongsToUserOrSystem(const std::filesystem::path& file) {
  struct stat status = {};
  Require(lstat(file.c_str(), &status) == 0);
  return status.st_uid == geteuid() || status.st_uid == 0;
}

}  // namespace conduit
