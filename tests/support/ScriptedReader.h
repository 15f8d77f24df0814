#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include <conduit/HaldenReaderHighLevelAPI.h>

namespace conduit {

/// A reader library that a test controls; calls back on the test's thread.
struct ScriptedReader {
  /// Called for every call of the four functions.
  std::function<void(const std::string&)> onCall = [](const std::string&) {};
  std::int32_t startCode = 0;
  std::int32_t state = static_cast<std::int32_t>(ReaderState::Enabled);

  // The arguments of HaldenReader_Initialise.
  ReaderDataCallback dataCallback = nullptr;
  ReaderEventCallback eventCallback = nullptr;
  ReaderErrorCallback errorCallback = nullptr;
  void* context = nullptr;

  void SendData(ReaderDataType type, std::int32_t length, void* data) const {
    dataCallback(context, type, length, data);
  }
  /// Sends a record of a type.
  template <class Record>
  void SendRecord(ReaderDataType type, Record& record) const {
    SendData(type, static_cast<std::int32_t>(sizeof record), &record);
  }
  void SendEvent(ReaderEventCode code) const { eventCallback(context, code); }
  void SendError(const char* text) const {
    errorCallback(nullptr, reinterpret_cast<const ReaderErrorInfo*>(text), context);
  }
};

/// Returns the process's only reader.
HALDEN_READER_API ScriptedReader& TheScriptedReader();

}  // namespace conduit
