#pragma once  // self-contained; C++17

#include <cstdint>

namespace conduit {

/// The events of a reader. A reader may send other codes; they have no name.
enum class ReaderEventCode : std::int32_t {
  DocOnWindow = 0,
  DocRemoved = 1,
  StartOfDocumentData = 2,
  EndOfDocumentData = 3,
  AutomaticStateChange = 4,
  RfChipOpenedSuccessfully = 5,
  RfApplicationOpenedSuccessfully = 6,
  RfChipOpenFailed = 7,
  ReaderErrorResolved = 8,
  SettingsInitialised = 9,
  PluginsInitialised = 10,
  StartOfPluginsDecode = 11,
  RfChipOpenTimeout = 12,
  RfChipRemovalSuccess = 13,
  RfChipRemovalTimeout = 14,
  ReadyForSmartcard = 15,
  BeginResolvingError = 16,
  ComPortOpen = 17,
  ComPortClosed = 18,
  ReadingData = 19,
  DataRead = 20,
  StartOfSwipeData = 21,
  EndOfSwipeData = 22,
  DeviceConnected = 23,
  DeviceDisconnected = 24,
  SwipeReaderConnected = 25,
  SwipeReaderDisconnected = 26,
};

/// The name of each event, indexed by its code: the host receives it, and a
/// condition waits for it.
inline constexpr const char* ReaderEventNames[] = {
    "DOC_ON_WINDOW",
    "DOC_REMOVED",
    "START_OF_DOCUMENT_DATA",
    "END_OF_DOCUMENT_DATA",
    "AUTOMATIC_STATE_CHANGE",
    "RF_CHIP_OPENED_SUCCESSFULLY",
    "RF_APPLICATION_OPENED_SUCCESSFULLY",
    "RF_CHIP_OPEN_FAILED",
    "READER_ERROR_RESOLVED",
    "SETTINGS_INITIALISED",
    "PLUGINS_INITIALISED",
    "START_OF_PLUGINS_DECODE",
    "RF_CHIP_OPEN_TIMEOUT",
    "RF_CHIP_REMOVAL_SUCCESS",
    "RF_CHIP_REMOVAL_TIMEOUT",
    "READY_FOR_SMARTCARD",
    "BEGIN_RESOLVING_ERROR",
    "COM_PORT_OPEN",
    "COM_PORT_CLOSED",
    "READING_DATA",
    "DATA_READ",
    "START_OF_SWIPE_DATA",
    "END_OF_SWIPE_DATA",
    "DEVICE_CONNECTED",
    "DEVICE_DISCONNECTED",
    "SWIPE_READER_CONNECTED",
    "SWIPE_READER_DISCONNECTED",
};
static_assert(sizeof ReaderEventNames / sizeof *ReaderEventNames ==
              static_cast<std::int32_t>(ReaderEventCode::SwipeReaderDisconnected) + 1);

}  // namespace conduit
