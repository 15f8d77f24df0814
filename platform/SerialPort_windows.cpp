#include <windows.h>

#include <filesystem>
#include <stdexcept>

#include "platform/SerialPort.h"

namespace conduit {
namespace {

[[noreturn]] void FailToOpen(const std::string& name, DWORD problem) {
  const auto reason = [problem]() -> std::string {
    switch (problem) {
      case ERROR_FILE_NOT_FOUND:
      case ERROR_PATH_NOT_FOUND:
        return "there is no such port";
      case ERROR_ACCESS_DENIED:
      case ERROR_SHARING_VIOLATION:
        return "it is in use";
      default:
        return "error " + std::to_string(problem);
    }
  };
  throw std::runtime_error("cannot open serial port " + name + ": " + reason());
}

void Require(bool done, const std::string& name) {
  if (!done) {
    FailToOpen(name, GetLastError());
  }
}

class Handle {
 public:
  /// Throws when the system did not open the handle.
  Handle(HANDLE handle, const std::string& portName) : handle(handle) {
    Require(handle != nullptr && handle != INVALID_HANDLE_VALUE, portName);
  }
  ~Handle() { CloseHandle(handle); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  const HANDLE handle;
};

/// Names from COM10 on require the prefix.
HANDLE Open(const std::string& name) {
  const std::filesystem::path device(u8"\\\\.\\" + std::u8string(name.begin(), name.end()));
  return CreateFileW(device.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_FLAG_OVERLAPPED,
                     nullptr);
}

HANDLE CreateSignal() { return CreateEventW(nullptr, TRUE, FALSE, nullptr); }

void SetUp(HANDLE port, const std::string& name, int baudRate) {
  DCB settings = {};
  settings.DCBlength = sizeof settings;
  settings.BaudRate = static_cast<DWORD>(baudRate);
  settings.fBinary = TRUE;
  settings.fDtrControl = DTR_CONTROL_ENABLE;
  settings.fRtsControl = RTS_CONTROL_ENABLE;
  settings.ByteSize = 8;
  settings.Parity = NOPARITY;
  settings.StopBits = ONESTOPBIT;
  Require(SetCommState(port, &settings), name);

  // A read blocks until the first byte, then returns after 5 ms without another byte.
  COMMTIMEOUTS times = {};
  times.ReadIntervalTimeout = 5;
  Require(SetCommTimeouts(port, &times), name);
  PurgeComm(port, PURGE_RXCLEAR);
}

}  // namespace

struct SerialPort::System {
  explicit System(const std::string& name)
      : port(Open(name), name), arrived(CreateSignal(), name), wake(CreateSignal(), name) {}

  const Handle port;
  const Handle arrived;
  const Handle wake;  ///< set after a stop request
};

SerialPort::SerialPort(const std::string& name, int baudRate)
    : name(name), system(std::make_unique<System>(name)) {
  SetUp(system->port.handle, name, baudRate);
}

SerialPort::~SerialPort() = default;

std::size_t SerialPort::Read(char* buffer, std::size_t size, const std::stop_token& stop) {
  const std::stop_callback waker(stop, [this] { SetEvent(system->wake.handle); });
  const HANDLE port = system->port.handle;
  while (!stop.stop_requested()) {
    OVERLAPPED reading = {};
    reading.hEvent = system->arrived.handle;
    if (!ReadFile(port, buffer, static_cast<DWORD>(size), nullptr, &reading)) {
      if (GetLastError() != ERROR_IO_PENDING) {
        throw std::runtime_error("serial port " + name + " is gone");
      }
      const HANDLE signals[] = {system->arrived.handle, system->wake.handle};
      WaitForMultipleObjects(2, signals, FALSE, INFINITE);
    }
    if (stop.stop_requested()) {
      CancelIo(port);
    }
    DWORD count = 0;
    const bool done = GetOverlappedResult(port, &reading, &count, TRUE) != 0;
    if (count > 0) {
      return count;
    }
    if (!done && GetLastError() != ERROR_OPERATION_ABORTED) {
      throw std::runtime_error("serial port " + name + " is gone");
    }
  }
  return 0;
}

}  // namespace conduit
