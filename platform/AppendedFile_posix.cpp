#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <utility>

#include "platform/AppendedFile.h"
#include "platform/Descriptor_posix.h"

namespace conduit {
namespace {

constexpr int MomentMilliseconds = 100;

/// Writes with SIGPIPE and SIGXFSZ suppressed, which would end the process: the caller gets
/// EPIPE or EFBIG instead.
ssize_t WriteWithoutSignals(int descriptor, const char* bytes, std::size_t size) {
  sigset_t signals;
  sigset_t before;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  sigaddset(&signals, SIGXFSZ);
  pthread_sigmask(SIG_BLOCK, &signals, &before);
  const ssize_t written = write(descriptor, bytes, size);
  const int problem = errno;
  if (written < 0 && (problem == EPIPE || problem == EFBIG)) {
    const timespec atOnce = {};
    sigtimedwait(&signals, nullptr, &atOnce);
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  errno = problem;
  return written;
}

}  // namespace

std::string AppendedFile::Open(const std::filesystem::path& file) {
  constexpr int flags = O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  constexpr mode_t mode = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
  const int opened = AboveStandardStreams(open(file.c_str(), flags, mode));
  const int problem = errno;
  struct stat status = {};
  if (opened < 0) {
    const bool pipe = stat(file.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
    return problem == ENXIO && pipe ? "it is a pipe that nobody reads"
                                    : std::generic_category().message(problem);
  }
  Close();
  descriptor = opened;
  regular = fstat(opened, &status) == 0 && S_ISREG(status.st_mode);
  return "";
}

void AppendedFile::Close() {
  if (IsOpen()) {
    close(std::exchange(descriptor, -1));
  }
  torn = false;
}

void AppendedFile::BeginLine() {
  struct stat status = {};
  lineStart = regular && fstat(descriptor, &status) == 0 ? status.st_size : 0;
  lineLength = 0;
}

std::error_code AppendedFile::Append(std::string_view bytes, bool patient) {
  if (torn) {
    torn = false;
    if (const std::error_code problem = Append("\n", patient)) {
      torn = true;
      return problem;
    }
  }
  while (!bytes.empty()) {
    const ssize_t written = WriteWithoutSignals(descriptor, bytes.data(), bytes.size());
    if (written >= 0) {
      lineLength += written;
      bytes.remove_prefix(static_cast<std::size_t>(written));
      continue;
    }
    const int problem = errno;
    if (problem == EAGAIN && patient) {
      pollfd room = {descriptor, POLLOUT, 0};
      patient = false;
      poll(&room, 1, MomentMilliseconds);
    } else if (problem != EINTR) {
      return {problem, std::generic_category()};
    }
  }
  return {};
}

void AppendedFile::TakeBack() {
  if (lineLength == 0) {
    return;
  }
  // Keeps lines that another process has appended since.
  struct stat status = {};
  const bool last =
      regular && fstat(descriptor, &status) == 0 && status.st_size == lineStart + lineLength;
  torn = !last || ftruncate(descriptor, lineStart) != 0;
  lineLength = 0;
}

}  // namespace conduit
