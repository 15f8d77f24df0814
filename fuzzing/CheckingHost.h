#pragma once

#include <cstring>
#include <string>

#include "fuzzing/Require.h"
#include <conduit/IInputModuleHost.h>
#include <conduit/IModuleLogger.h>
#include <conduit/ResultCode.h>

namespace conduit {

/// Checks every call against the contract of IInputModuleHost, and reads every text to its
/// end.
class CheckingHost final : public IInputModuleHost {
 public:
  std::int32_t SendData(const char* name, ItemType itemType, std::int32_t length, const void* data,
                        IStringMap* properties, bool last) override {
    Require(name != nullptr && name[0] != '\0', "an item has a name");
    Require(itemType >= ItemTypeUnknown && itemType <= ItemTypeImage, "an item has a known type");
    Require(itemType != ItemTypeText || data != nullptr, "no text is null");
    Require(last || properties != nullptr, "only a barcode is followed by others of its read");
    // A plain text has the reader's length; the length of a translated text is checked here.
    const bool plain =
        std::strcmp(name, "CODELINE") == 0 || std::strcmp(name, "SCDG1_CODELINE") == 0;
    if (itemType == ItemTypeText && properties == nullptr && !plain) {
      Require(std::strlen(static_cast<const char*>(data)) == static_cast<std::size_t>(length),
              "a text is as long as it says");
    }
    if (properties != nullptr) {
      Require(properties->Count() == 1 && properties->Get("feature") != nullptr,
              "a barcode knows its place");
    }
    return stops ? StopRecord : 0;
  }
  void SendEvent(const char* name) override { Require(name[0] != '\0', "an event has a name"); }
  void BeginData() override {}
  void EndData() override {}
  std::int32_t SetActiveScript(const char* name) override {
    lastScript = name;
    return stops ? 1 : 0;
  }
  void ReportState(const char* text) override { Require(text != nullptr, "a state is a text"); }
  void ReportError(const char* text) override { Require(text != nullptr, "an error is a text"); }

  bool stops = false;
  std::string lastScript;
};

/// Reads every line to its end.
class CheckingLogger final : public IModuleLogger {
 public:
  void Log(std::int32_t level, const char* tag, const char* message) override {
    Require(level >= 0 && level <= 3, "a line has a known level");
    Require(std::strlen(tag) > 0, "a line says who speaks");
    bytes += std::strlen(message);
  }

  std::size_t bytes = 0;
};

}  // namespace conduit
