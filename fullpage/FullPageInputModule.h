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
/// It starts and stops the reader library, and turns what the library reports
/// into named items, events, states and errors for the host. The callbacks run on
/// the library's threads, several at once if it likes; they call the host and the
/// logger on the same thread and write nothing that outlives the call.
class FullPageInputModule : public BaseInputModule {
 public:
  /// @param logger  borrowed for the module's life; null for no log
  explicit FullPageInputModule(IModuleLogger* logger);

  /// REQUIRES: SetHost was called.
  std::int32_t Initialise() override;
  std::int32_t Shutdown() override;

  // What the reader library calls; the context is the module. [reader thread]
  static void ProcessFullPageData(void* context, ReaderDataType type, std::int32_t length,
                                  void* data);
  static void ProcessFullPageEvent(void* context, ReaderEventCode code);
  static void ProcessError(void* first, const ReaderErrorInfo* error, void* context);

  /// Translates an item that carries a record; any other type has no effect.
  /// REQUIRES: the record is of the kind that belongs to the type, and not null.
  void ProcessRecordData(ReaderDataType type, const void* record);

  /// Logs and delivers one text item; a null value is delivered as one blank,
  /// and not logged.
  /// @param name  NUL-terminated
  /// @returns the host's answer.
  std::int32_t ProcessStringDataItem(std::string_view name, const char* value);

  // The settings, each the target of the parameter of its name. Read at the
  // moment they are needed.
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

  /// Logs the failure when a record or barcode came without one.
  bool HasData(ReaderDataType type, const void* data);
  void DeliverBarcode(const char* name, const ReaderBarcodeData& barcode);
  void DeliverPlainItem(const char* name, ItemType itemType, std::int32_t length, const void* data);
  /// Passes the text of the reader's state of this moment to the host.
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
  /// Tells the host of something about the record under way.
  /// @returns true when the host wants nothing more of the record.
  bool SignalStopsRecord(const char* name);
};

}  // namespace conduit
