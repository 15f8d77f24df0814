#pragma once

#include <cstddef>
#include <memory>
#include <stop_token>
#include <string>

namespace conduit {

/// A serial port for reading: eight bits, no parity, one stop bit, no flow control. Failures
/// throw std::runtime_error with the port and the system's reason. One thread at a time.
class SerialPort {
 public:
  /// Opens the port exclusively and discards bytes received before.
  /// @param name  the system's name, in UTF-8: "/dev/ttyUSB0", "COM3"
  SerialPort(const std::string& name, int baudRate);
  ~SerialPort();
  SerialPort(const SerialPort&) = delete;
  SerialPort& operator=(const SerialPort&) = delete;

  /// Reads the received bytes; blocks while there are none. Throws when the port vanishes.
  /// @param stop  the same at every call
  /// @returns the number of bytes; 0 after a stop request.
  std::size_t Read(char* buffer, std::size_t size, const std::stop_token& stop);

 private:
  struct System;
  std::string name;
  std::unique_ptr<System> system;
};

}  // namespace conduit
