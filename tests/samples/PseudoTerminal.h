#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>

namespace conduit {

/// A simulated device: a program reads the bytes written here from the port `name`.
class PseudoTerminal {
 public:
  /// Returns whether the system has pseudo-terminals; without /dev/pts it does not.
  static bool IsAvailable() { return !PseudoTerminal().name.empty(); }

  PseudoTerminal() : device(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
    const char* const port =
        grantpt(device) == 0 && unlockpt(device) == 0 ? ptsname(device) : nullptr;
    if (port != nullptr && access(port, R_OK) == 0) {
      name = port;
    }
  }
  ~PseudoTerminal() { Unplug(); }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  /// Writes without blocking.
  /// @returns the bytes that did not fit.
  std::string_view WriteWhatFits(std::string_view bytes) const {
    const ssize_t count = write(device, bytes.data(), bytes.size());
    return bytes.substr(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  }

  void Write(std::string_view bytes) const {
    while (!(bytes = WriteWhatFits(bytes)).empty()) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }

  void Unplug() {
    close(device);
    device = -1;
  }

  std::string name;

 private:
  int device;
};

}  // namespace conduit
