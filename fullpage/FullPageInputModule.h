#pragma once

#include <cstdint>
#include <string_view>

#include "framework/BaseInputModule.h"
#include "runtime/BaseString.h"
#include "runtime/TextBuilder.h"
#include <conduit/HaldenReaderHighLevelAPI.h>
#include <conduit/ParameterName.h>
#include <conduit/ReaderAamvaData.h>
#include <conduit/ReaderBarcodeData.h>
#include <conduit/ReaderCodelineData.h>
#include <conduit/ReaderSwipeData.h>

namespace conduit {

/// The input module of a full-page document reader.
///
/// Starts and stops the reader library, and translates its reports to named items,
/// events, states and errors for the host. The callbacks run on the library's
/// threads, possibly several at once; they call the host and the logger on the same
/// thread and change no state of the module.
class FullPageInputModule : public BaseInputModule {
 public:
  /// @param logger  borrowed for the module's life; null for no log
  explicit FullPageInputModule(IModuleLogger* logger);

  /// REQUIRES: SetHost was called.
  std::int32_t Initialise() override;
  std::int32_t Shutdown() override;

  // The reader library's callbacks; the context is the module. [reader thread]
  static void ProcessFullPageData(void* context, ReaderDataType type, std::int32_t length,
                                  void* data);
  static void ProcessFullPageEvent(void* context, ReaderEventCode code);
  static void ProcessError(void* first, const ReaderErrorInfo* error, void* context);

  /// Translates an item that carries a record; ignores any other type.
  /// REQUIRES: the record has the layout of the type and is not null.
  void ProcessRecordData(ReaderDataType type, const void* record);

  /// Logs and delivers one text item. Delivers a null value as one blank, without
  /// logging it.
  /// @param name  NUL-terminated
  /// @returns the host's answer.
  std::int32_t ProcessStringDataItem(std::string_view name, const char* value);

  // The settings: each is the target of the parameter with its name.
  std::int32_t LogLevel = ParameterDefault::LogLevel;
  BaseString<char> LogFileName = ParameterDefault::LogFileName;
  BaseString<char> DateOfBirthFormat = ParameterDefault::DateFormat;
  BaseString<char> IssueDateFormat = ParameterDefault::DateFormat;
  BaseString<char> ExpiryDateFormat = ParameterDefault::DateFormat;
  BaseString<char> BadChars = ParameterDefault::BadChars;

 private:
  void OnData(ReaderDataType type, std::int32_t length, const void* data);
  void OnEvent(ReaderEventCode code);
  void OnError(const char* text);

  /// Returns whether a record or barcode has data; logs a failure when not.
  bool HasData(ReaderDataType type, const void* data);
  void DeliverBarcode(const char* name, const ReaderBarcodeData& barcode);
  void DeliverPlainItem(const char* name, ItemType itemType, std::int32_t length, const void* data);
  /// Reports the reader's current state to the host.
  void ReportReaderState();
  using BaseInputModule::ReportReaderState;

  void ProcessCodelineData(const ReaderCodelineData& record);
  void ProcessAamvaData(const ReaderAamvaData& record);
  void ProcessSwipeData(const ReaderSwipeData& record);

  std::int32_t ProcessStringDataItem(std::string_view name, TextBuilder& value);
  std::int32_t ProcessStringDataItem(std::string_view name, char value);
  /// @param absent  delivered as the empty text
  void ProcessRawDate(std::string_view name, ReaderDate date, bool absent);
  void ProcessFormattedDate(std::string_view name, const BaseString<char>& format, ReaderDate date,
                            bool alwaysCurrentCentury);
  void ProcessMeasurement(std::string_view name, std::int32_t value, std::int32_t unit);
  std::int32_t ProcessText(std::string_view name, const char* value, std::int32_t length);
  /// Sends a signal about the current record.
  /// @returns whether the host answered StopRecord.
  bool SignalStopsRecord(const char* name);
};

}  // namespace conduit
