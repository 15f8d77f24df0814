#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include <conduit/HaldenReaderHighLevelAPI.h>

namespace conduit {

/// A reader library that does what a test tells it, on the test's thread.
struct ScriptedReader {
  /// Told of every call of the four functions.
  std::function<void(const std::string&)> onCall = [](const std::string&) {};
  std::int32_t startCode = 0;
  std::int32_t state = static_cast<std::int32_t>(ReaderState::Enabled);

  // What HaldenReader_Initialise was given.
  ReaderDataCallback dataCallback = nullptr;
  ReaderEventCallback eventCallback = nullptr;
  ReaderErrorCallback errorCallback = nullptr;
  void* context = nullptr;

  void SendData(ReaderDataType type, std::int32_t length, void* data) const {
    dataCallback(context, type, length, data);
  }
  /// A record, which its type says all about.
  template <class Record>
  void SendRecord(ReaderDataType type, Record& record) const {
    SendData(type, static_cast<std::int32_t>(sizeof record), &record);
  }
  void SendEvent(ReaderEventCode code) const { eventCallback(context, code); }
  void SendError(const char* text) const {
    errorCallback(nullptr, reinterpret_cast<const ReaderErrorInfo*>(text), context);
  }
};

/// The one reader of the process.
HALDEN_READER_API ScriptedReader& TheScriptedReader();

}  // namespace conduit
