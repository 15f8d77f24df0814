#include "fullpage/FullPageInputModule.h"

#include "interfaces/ResultCode.h"
#include "runtime/Log.h"
#include "runtime/Text.h"

namespace conduit {

FullPageInputModule::FullPageInputModule(IModuleLogger* logger) : BaseInputModule(logger) {
  IntParameter* const level = parameters.AddLogLevelParameter(&LogLevel);
  level->mustBeInRange = true;
  level->rangeLow = 0;
  level->rangeHigh = 5;
  parameters.AddStringParameter("LogFileName", &LogFileName)->required = true;
  parameters.AddStringParameter("DateOfBirthFormat", &DateOfBirthFormat)->dateTimeFormat = true;
  parameters.AddStringParameter("ExpiryDateFormat", &ExpiryDateFormat)->dateTimeFormat = true;
  parameters.AddStringParameter("IssueDateFormat", &IssueDateFormat)->dateTimeFormat = true;
  parameters.AddStringParameter("BadChars", &BadChars)->required = true;
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

std::int32_t FullPageInputModule::ProcessStringDataItem(const char* name, const char* value) {
  if (value == nullptr) {
    return host->SendData(name, ItemTypeText, 1, " ", nullptr, true);
  }
  return ProcessText(name, value, TextLength(value));
}

std::int32_t FullPageInputModule::ProcessStringDataItem(const char* name,
                                                        const BaseString<char>& value) {
  return ProcessText(name, value.buffer, value.length);
}

std::int32_t FullPageInputModule::ProcessStringDataItem(const char* name, char value) {
  const char text[] = {value, '\0'};
  return ProcessText(name, text, value != '\0' ? 1 : 0);
}

std::int32_t FullPageInputModule::ProcessText(const char* name, const char* value,
                                              std::int32_t length) {
  if (logger != nullptr) {
    TraceItem(name, {value, static_cast<std::size_t>(length)});
  }
  return host->SendData(name, ItemTypeText, length, value, nullptr, true);
}

void FullPageInputModule::TraceItem(const char* name, std::string_view value) {
  Log(logger, MessageTrace, "FullPageInputModule::ProcessStringDataItem",
      "ProcessStringDataItem - aName ", name, "  aValue ", value);
}

}  // namespace conduit
