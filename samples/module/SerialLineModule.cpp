#include <cstdint>
#include <exception>
#include <memory>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <utility>

#include "framework/BaseInputModule.h"
#include "framework/CreateModule.h"
#include "framework/DeviceThread.h"
#include "platform/SerialPort.h"
#include "runtime/Log.h"
#include <conduit/ModuleEntry.h>

namespace conduit {
namespace {

constexpr const char* LineItem = "SERIAL_LINE";
constexpr std::size_t LongestLine = 4096;
constexpr const char* ReadTag = "SerialLineModule::ReadLines";

/// Delivers each line received from a serial port as a document with one text item.
class SerialLineModule final : public BaseInputModule {
 public:
  explicit SerialLineModule(IModuleLogger* logger) : BaseInputModule(logger, "SerialLine") {
    parameters.AddStringParameter("Port", &Port)->required = true;
    IntParameter* const rate = parameters.AddIntParameter("BaudRate", &BaudRate);
    rate->mustBeInRange = true;
    rate->rangeLow = 50;
    rate->rangeHigh = 4'000'000;
  }

  std::int32_t Initialise() override {
    try {
      reader.Stop();  // an earlier run keeps its port open
      if (Port.length == 0) {
        throw std::runtime_error("the parameter Port names no serial port");
      }
      const auto port = std::make_shared<SerialPort>(Port.buffer, BaudRate);
      ReportReaderState(ReaderState::Enabled);
      reader.Start([this, port](const std::stop_token& stop) { ReadLines(*port, stop); });
      return ResultSuccess;
    } catch (const std::runtime_error& problem) {
      Fail("SerialLineModule::Initialise", problem.what(), ReaderState::Error);
      return ResultReaderNotStarted;
    }
  }

  std::int32_t Shutdown() override {
    reader.Stop();
    return ResultSuccess;
  }

 private:
  void ReadLines(SerialPort& port, const std::stop_token& stop) {
    BeginLine();
    afterReturn = false;
    Deliver(ReaderEventCode::DeviceConnected, ReaderState::Enabled);
    std::string problem;
    try {
      char bytes[512];
      while (const std::size_t count = port.Read(bytes, sizeof bytes, stop)) {
        for (std::size_t i = 0; i < count && !stop.stop_requested(); ++i) {
          TakeByte(bytes[i]);
        }
      }
    } catch (const std::exception& thrown) {
      problem = thrown.what();
    }
    if (!line.empty()) {
      Log(logger, MessageFailure, ReadTag,
          "Left out a line that did not end. Bytes: ", static_cast<std::int32_t>(line.size()));
    }
    if (!problem.empty()) {
      Deliver(ReaderEventCode::DeviceDisconnected, ReaderState::Error);
      Fail(ReadTag, problem, ReaderState::Terminated);
    }
  }

  /// A line ends in CR, LF or both.
  void TakeByte(char byte) {
    if (byte == '\0') {
      if (!std::exchange(hadNul, true)) {
        Log(logger, MessageFailure, ReadTag, "Left NUL bytes out of a line");
      }
      return;  // a text item cannot contain NUL
    }
    const bool endsPair = byte == '\n' && afterReturn;
    afterReturn = byte == '\r';
    if ((byte == '\r' || byte == '\n') && !endsPair) {
      EndLine();
    } else if (!endsPair && !tooLong) {
      line += byte;
      tooLong = line.size() > LongestLine;
      if (tooLong) {
        Fail(ReadTag, "left out a line of more than " + std::to_string(LongestLine) + " bytes",
             ReaderState::Error);
      }
    }
  }

  void EndLine() {
    if (!tooLong) {
      Deliver(ReaderEventCode::StartOfDocumentData, ReaderState::Reading);
      Log(logger, MessageTrace, ReadTag, "ItemName: ", LineItem);
      host->SendData(LineItem, ItemTypeText, static_cast<std::int32_t>(line.size()), line.c_str(),
                     nullptr, true);
      Deliver(ReaderEventCode::EndOfDocumentData, ReaderState::Enabled);
    }
    BeginLine();
  }

  void BeginLine() {
    line.clear();
    hadNul = false;
    tooLong = false;
  }

  void Deliver(ReaderEventCode event, ReaderState state) {
    DeliverEvent(event, ReadTag);
    ReportReaderState(state);
  }

  void Fail(const char* tag, const std::string& text, ReaderState state) {
    Log(logger, MessageFailure, tag, "Serial Port Error: ", text.c_str());
    host->ReportError(text.c_str());
    ReportReaderState(state);
  }

  BaseString<char> Port;
  std::int32_t BaudRate = 9600;
  // The current line; used on the reader's thread only.
  std::string line;
  bool hadNul = false;
  bool tooLong = false;
  bool afterReturn = false;

  DeviceThread reader;  ///< last, so that it ends before the fields it uses are destroyed
};

}  // namespace
}  // namespace conduit

std::int32_t CIM_GetInputModule(conduit::IModuleLogger* logger, conduit::IInputModule** module) {
  return conduit::CreateModule<conduit::SerialLineModule>(logger, module);
}

std::int32_t CIM_Destroy(conduit::IInputModule* module) { return conduit::DestroyModule(module); }
