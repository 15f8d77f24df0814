#pragma once

#include <cstddef>
#include <memory>
#include <stop_token>
#include <string>

namespace conduit {

/// A serial port that is read: eight bits, no parity, one stop bit, no flow control. What
/// fails throws a std::runtime_error that names the port and the system's reason. One
/// thread at a time.
class SerialPort {
 public:
  /// Opens the port for this object alone, and drops what came before.
  /// @param name  as the system names it, in UTF-8: "/dev/ttyUSB0", "COM3"
  SerialPort(const std::string& name, int baudRate);
  ~SerialPort();
  SerialPort(const SerialPort&) = delete;
  SerialPort& operator=(const SerialPort&) = delete;

  /// Takes the bytes that have come, and waits for some when there are none. Throws when
  /// the port is gone.
  /// @param stop  the same at every call
  /// @returns their number; 0 when a stop is asked for instead.
  std::size_t Read(char* buffer, std::size_t size, const std::stop_token& stop);

 private:
  struct System;
  std::string name;
  std::unique_ptr<System> system;
};

}  // namespace conduit
