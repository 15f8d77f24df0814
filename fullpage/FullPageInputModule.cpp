#include "fullpage/FullPageInputModule.h"

#include "fullpage/DateFormat.h"
#include "runtime/Log.h"
#include "runtime/Text.h"
#include <conduit/ResultCode.h>

namespace conduit {

FullPageInputModule::FullPageInputModule(IModuleLogger* logger) : BaseInputModule(logger) {
  IntParameter* const level = parameters.AddLogLevelParameter(&LogLevel);
  level->mustBeInRange = true;
  level->rangeLow = LogLevelLow;
  level->rangeHigh = LogLevelHigh;
  parameters.AddStringParameter(ParameterName::LogFileName, &LogFileName)->required = true;
  parameters.AddStringParameter(ParameterName::DateOfBirthFormat, &DateOfBirthFormat)
      ->dateTimeFormat = true;
  parameters.AddStringParameter(ParameterName::ExpiryDateFormat, &ExpiryDateFormat)
      ->dateTimeFormat = true;
  parameters.AddStringParameter(ParameterName::IssueDateFormat, &IssueDateFormat)->dateTimeFormat =
      true;
  parameters.AddStringParameter(ParameterName::BadChars, &BadChars)->required = true;
}

std::int32_t FullPageInputModule::Initialise() {
  constexpr std::int32_t everyPart = -1;
  HaldenReader_EnableLogging(true, LogLevel, everyPart, LogFileName.buffer);
  const std::int32_t code = HaldenReader_Initialise(ProcessFullPageData, ProcessFullPageEvent,
                                                    ProcessError, nullptr, false, false, this);
  ReportReaderState();
  if (code == ResultSuccess) {
    return ResultSuccess;
  }
  Log(logger, MessageFailure, "FullPageInputModule::Initialise",
      "Failed to initialise Full Page Reader. Error Code: ", code);
  return ResultReaderNotStarted;
}

std::int32_t FullPageInputModule::Shutdown() {
  HaldenReader_Shutdown();
  return ResultSuccess;
}

std::int32_t FullPageInputModule::ProcessStringDataItem(std::string_view name, const char* value) {
  if (value == nullptr) {
    return host->SendData(name.data(), ItemTypeText, 1, " ", nullptr, true);
  }
  return ProcessText(name, value, TextLength(value));
}

std::int32_t FullPageInputModule::ProcessStringDataItem(std::string_view name, TextBuilder& value) {
  return ProcessText(name, value.Text(), static_cast<std::int32_t>(value.Length()));
}

std::int32_t FullPageInputModule::ProcessStringDataItem(std::string_view name, char value) {
  const char text[] = {value, '\0'};
  return ProcessText(name, text, value != '\0' ? 1 : 0);
}

void FullPageInputModule::ProcessFormattedDate(std::string_view name,
                                               const BaseString<char>& format, ReaderDate date,
                                               bool alwaysCurrentCentury) {
  const TimeText text = FormatDateText(format, date, alwaysCurrentCentury);
  ProcessText(name, text.text, text.length);
}

void FullPageInputModule::ProcessRawDate(std::string_view name, ReaderDate date, bool absent) {
  TextBuilder text;
  if (!absent) {
    AppendRawDate(text, date);
  }
  ProcessStringDataItem(name, text);
}

std::int32_t FullPageInputModule::ProcessText(std::string_view name, const char* value,
                                              std::int32_t length) {
  Log(logger, MessageTrace, "FullPageInputModule::ProcessStringDataItem",
      "ProcessStringDataItem - aName ", name, "  aValue ",
      std::string_view(value, static_cast<std::size_t>(length)));
  return host->SendData(name.data(), ItemTypeText, length, value, nullptr, true);
}

}  // namespace conduit
