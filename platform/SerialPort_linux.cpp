#include <asm/termbits.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <system_error>

#include "platform/SerialPort.h"

namespace conduit {
namespace {

[[noreturn]] void FailToOpen(const std::string& name, const std::string& reason) {
  throw std::runtime_error("cannot open serial port " + name + ": " + reason);
}

void Require(bool done, const std::string& name) {
  if (!done) {
    FailToOpen(name, std::generic_category().message(errno));
  }
}

class Descriptor {
 public:
  /// Throws when the system did not open the descriptor.
  Descriptor(int number, const std::string& portName) : number(number) {
    Require(number >= 0, portName);
  }
  ~Descriptor() { close(number); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  const int number;
};

/// Uses Linux's termios2: the standard termios supports only a list of rates.
void SetUp(int port, const std::string& name, int baudRate) {
  termios2 settings = {};
  settings.c_iflag = IGNBRK;
  settings.c_cflag = BOTHER | CS8 | CREAD | CLOCAL;  // a plain cable carries no modem lines
  settings.c_ispeed = static_cast<speed_t>(baudRate);
  settings.c_ospeed = static_cast<speed_t>(baudRate);
  settings.c_cc[VMIN] = 1;
  Require(ioctl(port, TCSETSF2, &settings) == 0, name);

  // A driver chooses the nearest rate of its device. A deviation of more than a few per cent
  // corrupts bytes.
  Require(ioctl(port, TCGETS2, &settings) == 0, name);
  constexpr int tolerance = 30;  // 1/30, about 3 per cent
  const int actual = static_cast<int>(settings.c_ospeed);
  if (std::abs(actual - baudRate) > baudRate / tolerance) {
    FailToOpen(name, "it does not run at " + std::to_string(baudRate) + " baud");
  }
}

}  // namespace

struct SerialPort::System {
  /// Does not wait for a carrier, and does not become the process's controlling terminal.
  explicit System(const std::string& name)
      : port(open(name.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC), name),
        wake(eventfd(0, EFD_CLOEXEC), name) {}

  const Descriptor port;
  const Descriptor wake;  ///< readable after a stop request
};

SerialPort::SerialPort(const std::string& name, int baudRate)
    : name(name), system(std::make_unique<System>(name)) {
  // Two readers of one port would each get a part of the bytes.
  if (flock(system->port.number, LOCK_EX | LOCK_NB) != 0) {
    FailToOpen(name, "it is in use");
  }
  SetUp(system->port.number, name, baudRate);
}

SerialPort::~SerialPort() = default;

std::size_t SerialPort::Read(char* buffer, std::size_t size, const std::stop_token& stop) {
  const std::stop_callback waker(stop, [this] { eventfd_write(system->wake.number, 1); });
  while (!stop.stop_requested()) {
    pollfd ready[] = {{system->port.number, POLLIN, 0}, {system->wake.number, POLLIN, 0}};
    if (poll(ready, 2, -1) < 0 || ready[0].revents == 0) {
      continue;
    }
    const ssize_t count = read(system->port.number, buffer, size);
    if (count > 0) {
      return static_cast<std::size_t>(count);
    }
    if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
      throw std::runtime_error("serial port " + name + " is gone");
    }
  }
  return 0;
}

}  // namespace conduit
