// The same deliveries in straightforward code: std::string for texts, std::map for lookups,
// std::vector for sequences.
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <map>
#include <string>
#include <vector>

#include "benchmarks/ComparedModule.h"
#include "benchmarks/DeliveredItems.h"
#include <conduit/Implements.h>
#include <conduit/ParameterName.h>
#include <conduit/Reaction.h>
#include <conduit/ReaderBarcodeData.h>
#include <conduit/ReaderItem.h>
#include <conduit/ReaderState.h>
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

class PlainProperties final : public Implements<IStringMap> {
 public:
  std::int32_t Count() override { return static_cast<std::int32_t>(entries.size()); }
  void Set(const char* key, const char* value) override { entries[key] = value; }
  const char* Get(const char* key) override {
    const auto entry = entries.find(key);
    return entry != entries.end() ? entry->second.c_str() : nullptr;
  }
  void RemoveAll() override { entries.clear(); }
  void Remove(const char* key) override { entries.erase(key); }

 private:
  std::map<std::string, std::string> entries;
};

struct PlainParameter {
  std::string inUse;
  std::string asSet;
  bool required = false;
  bool date = false;
};

struct PlainCondition {
  std::string name;
  std::string value;
  std::vector<std::string> scripts;
};

std::tm Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  return local;
}

bool IsDateFormat(const std::string& format) {
  for (std::size_t sign = format.find('%'); sign != std::string::npos;
       sign = format.find('%', sign + 2)) {
    if (sign + 1 == format.size() ||
        std::string(DateConversions).find(format[sign + 1]) == std::string::npos) {
      return false;
    }
  }
  return true;
}

std::string FormatTime(const std::string& format, const std::tm& time) {
  char text[1024];
  return {text, std::strftime(text, sizeof text, format.c_str(), &time)};
}

class PlainModule final : public ComparedModule<PlainModule> {
 public:
  explicit PlainModule(IModuleLogger* moduleLogger) : ComparedModule(moduleLogger) {
    parameters[ParameterName::LogLevel] = {"1", "", true, false};
    parameters[ParameterName::LogFileName] = {ParameterDefault::LogFileName, "", true, false};
    parameters[ParameterName::DateOfBirthFormat] = {ParameterDefault::DateFormat, "", false, true};
    parameters[ParameterName::ExpiryDateFormat] = {ParameterDefault::DateFormat, "", false, true};
    parameters[ParameterName::IssueDateFormat] = {ParameterDefault::DateFormat, "", false, true};
    parameters[ParameterName::BadChars] = {ParameterDefault::BadChars, "", true, false};
    for (const ReaderItem& row : ReaderItems) {
      if (row.kind == ReaderItemKind::Barcode) {
        barcodes[row.type] = row.name;
      } else if (row.kind != ReaderItemKind::Record) {
        items[row.type] = {row.name,
                           row.kind == ReaderItemKind::Text ? ItemTypeText : ItemTypeImage};
      }
    }
  }

  std::int32_t Initialise() override {
    StartReader(std::stoi(parameters[ParameterName::LogLevel].inUse),
                parameters[ParameterName::LogFileName].inUse.c_str());
    ReportState();
    return 0;
  }

  std::int32_t SetParameter(const char* name, const char* value) override {
    const auto found = parameters.find(name);
    if (found == parameters.end()) {
      return ResultUnknownParameter;
    }
    const std::string text = value;
    if (found->second.required && text.empty()) {
      return ResultValueMissing;
    }
    if (found->first == ParameterName::LogLevel && (std::stoi(text) < 0 || std::stoi(text) > 5)) {
      return ResultInvalidValue;
    }
    if (found->second.date) {
      if (!IsDateFormat(text)) {
        return ResultInvalidValue;
      }
      FormatTime(text, Now());
    }
    found->second.inUse = text;
    found->second.asSet = text;
    return ResultSuccess;
  }

  std::int32_t GetParameter(const char* name, const char** value) override {
    const auto found = parameters.find(name);
    if (found == parameters.end()) {
      return ResultUnknownParameter;
    }
    *value = found->second.asSet.c_str();
    return ResultSuccess;
  }

  std::int32_t AddCondition(const char* name, const char* value) override {
    conditions.push_back({name, value, {}});
    return ResultSuccess;
  }

  std::int32_t AddAction(const char* name, const char* value, const char* /*actionName*/,
                         const char* script) override {
    const auto condition = FindCondition(name, value);
    if (condition == conditions.end()) {
      return ResultUnknownCondition;
    }
    condition->scripts.emplace_back(script);
    return ResultSuccess;
  }

  void OnData(ReaderDataType type, std::int32_t length, const void* data) {
    const auto item = items.find(type);
    const std::string name = item != items.end() ? item->second.first : "";
    if (logger != nullptr) {
      const std::string line = "ItemName: " + name;
      logger->Log(2, ItemTag, line.c_str());
    }
    if (item != items.end()) {
      host->SendData(name.c_str(), item->second.second, length, data, nullptr, true);
    } else if (type == ReaderDataType::CodelineRecord) {
      Deliver(ItemName::InputSource, InputSource::Ocr);
      DeliverCodeline(static_cast<const char*>(data));
    } else if (type == ReaderDataType::AamvaBarcodeRecord) {
      DeliverLicence(static_cast<const char*>(data));
    } else {
      DeliverBarcode(barcodes[type], *static_cast<const ReaderBarcodeData*>(data));
    }
  }

  void OnEvent(ReaderEventCode code) {
    host->ReportError("");
    const std::string name = ReaderEventNames[static_cast<std::size_t>(code)];
    if (logger != nullptr) {
      const std::string line = "Event: " + name;
      logger->Log(2, EventTag, line.c_str());
    }
    const auto condition = FindCondition(ConditionKind::ReceiveEvent, name);
    if (condition != conditions.end()) {
      for (const std::string& script : condition->scripts) {
        if (host->SetActiveScript(script.c_str()) != 0) {
          break;
        }
      }
    }
    if (code == ReaderEventCode::StartOfDocumentData || code == ReaderEventCode::StartOfSwipeData) {
      host->BeginData();
    } else if (code == ReaderEventCode::EndOfDocumentData ||
               code == ReaderEventCode::EndOfSwipeData) {
      host->EndData();
    }
    host->SendEvent(name.c_str());
    ReportState();
  }

 private:
  std::vector<PlainCondition>::iterator FindCondition(const std::string& name,
                                                      const std::string& value) {
    return std::find_if(conditions.begin(), conditions.end(), [&](const auto& condition) {
      return condition.name == name && condition.value == value;
    });
  }

  void ReportState() {
    const std::string state = ReaderStateNames[static_cast<std::size_t>(HaldenReader_GetState())];
    host->ReportState(state.c_str());
  }

  void Deliver(const std::string& name, const std::string& value) {
    if (logger != nullptr) {
      const std::string line = "ProcessStringDataItem - aName " + name + "  aValue " + value;
      logger->Log(2, TextTag, line.c_str());
    }
    host->SendData(name.c_str(), ItemTypeText, static_cast<std::int32_t>(value.size()),
                   value.c_str(), nullptr, true);
  }

  void DeliverDate(const std::string& name, ReaderDate date) {
    char text[40];
    std::snprintf(text, sizeof text, "%.2d-%.2d-%.2d", date.day, date.month, date.year);
    Deliver(name, text);
  }

  void DeliverFormatted(const std::string& name, const std::string& parameter, ReaderDate date,
                        bool ahead) {
    const std::int32_t current = Now().tm_year;
    std::tm time{};
    time.tm_mday = std::clamp(date.day, 1, 31);
    time.tm_mon = std::clamp(date.month, 1, 12) - 1;
    time.tm_year = date.year + (ahead || date.year < current % 100 ? current - current % 100 : 0);
    Deliver(name, FormatTime(parameters[parameter].inUse, time));
  }

  void DeliverMeasure(const std::string& name, std::int32_t value, std::int32_t unit) {
    Deliver(name, value != 0 ? std::to_string(value) + " " + ReaderMeasurementUnitNames[unit] : "");
  }

  void DeliverCodeline(const char* record) {
    const auto& fields = *reinterpret_cast<const ReaderCodelineData*>(record);
    const std::string type = fields.docType;
    const std::vector<std::string> recognised(std::begin(RecognisedDocumentTypes),
                                              std::end(RecognisedDocumentTypes));
    const std::string codeline = fields.codeline;
    if (codeline.find_first_of(parameters[ParameterName::BadChars].inUse) != std::string::npos) {
      host->SendData(Signal::BadChars, ItemTypeText, 1, " ", nullptr, true);
    }
    for (const DeliveredText& text : CodelineLines) {
      Deliver(text.name, record + text.offset);
    }
    if (std::find(recognised.begin(), recognised.end(), type) == recognised.end()) {
      return;
    }
    DeliverDate(ItemName::CodelineDateOfBirth, fields.dateOfBirth);
    DeliverFormatted(ItemName::CodelineDateOfBirthFormatted, ParameterName::DateOfBirthFormat,
                     fields.dateOfBirth, false);
    DeliverDate(ItemName::CodelineExpiryDate, fields.expiryDate);
    DeliverFormatted(ItemName::CodelineExpiryDateFormatted, ParameterName::ExpiryDateFormat,
                     fields.expiryDate, true);
    for (const DeliveredText& text : CodelineFields) {
      Deliver(text.name, record + text.offset);
    }
    Deliver(ItemName::CodelineShortSex, std::string(1, fields.shortSex));
  }

  void DeliverLicence(const char* record) {
    const auto& fields = *reinterpret_cast<const ReaderAamvaData*>(record);
    for (const DeliveredText& text : AamvaFields) {
      Deliver(text.name, record + text.offset);
    }
    Deliver(ItemName::LicenceShortSex, std::string(1, fields.shortSex));
    DeliverDate(ItemName::LicenceDateOfBirth, fields.dateOfBirth);
    DeliverFormatted(ItemName::LicenceDateOfBirthFormatted, ParameterName::DateOfBirthFormat,
                     fields.dateOfBirth, false);
    DeliverDate(ItemName::LicenceIssueDate, fields.issueDate);
    DeliverFormatted(ItemName::LicenceIssueDateFormatted, ParameterName::IssueDateFormat,
                     fields.issueDate, false);
    DeliverDate(ItemName::LicenceExpiryDate, fields.expiryDate);
    DeliverFormatted(ItemName::LicenceExpiryDateFormatted, ParameterName::ExpiryDateFormat,
                     fields.expiryDate, true);
    DeliverMeasure(ItemName::LicenceHeight, fields.height, fields.heightUnit);
    DeliverMeasure(ItemName::LicenceWeight, fields.weight, fields.weightUnit);
    Deliver(ItemName::LicenceHairColor, ReaderHairColorNames[fields.hairColor]);
    Deliver(ItemName::LicenceEyeColor, ReaderEyeColorNames[fields.eyeColor]);
  }

  void DeliverBarcode(const std::string& name, const ReaderBarcodeData& barcode) {
    PlainProperties properties;
    properties.Set(ItemProperty::Feature, std::to_string(barcode.index).c_str());
    host->SendData(name.c_str(), ReaderBarcodeItemTypes[barcode.format], barcode.length,
                   barcode.data, &properties, barcode.index + 1 == barcode.count);
  }

  std::map<std::string, PlainParameter> parameters;
  std::map<ReaderDataType, std::pair<std::string, ItemType>> items;
  std::map<ReaderDataType, std::string> barcodes;
  std::vector<PlainCondition> conditions;
};

}  // namespace
}  // namespace conduit

std::int32_t CIM_GetInputModule(conduit::IModuleLogger* logger, conduit::IInputModule** module) {
  *module = new conduit::PlainModule(logger);
  return 0;
}

std::int32_t CIM_Destroy(conduit::IInputModule* module) {
  conduit::Destroy(module);
  return 0;
}
