// The minimum work of a delivery: reads texts in place, builds log lines on the stack,
// allocates nothing.
#include <algorithm>
#include <charconv>
#include <cstring>
#include <ctime>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "benchmarks/ComparedModule.h"
#include "benchmarks/DeliveredItems.h"
#include <conduit/Implements.h>
#include <conduit/ParameterName.h>
#include <conduit/ReaderBarcodeData.h>
#include <conduit/ReaderItem.h>
#include <conduit/ReaderState.h>
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

/// Concatenates a text on the stack; truncates what does not fit.
class StackText {
 public:
  StackText& operator<<(std::string_view piece) {
    const std::size_t room = sizeof text - 1 - length;
    const std::size_t size = piece.size() < room ? piece.size() : room;
    std::memcpy(text + length, piece.data(), size);
    length += size;
    return *this;
  }
  StackText& operator<<(std::int32_t number) {
    length = static_cast<std::size_t>(
        std::to_chars(text + length, text + sizeof text - 1, number).ptr - text);
    return *this;
  }
  StackText& TwoDigits(std::int32_t number) {
    return (number < 10 ? *this << "0" : *this) << number;
  }
  const char* Text() {
    text[length] = '\0';
    return text;
  }

 private:
  std::size_t length = 0;
  char text[4096];
};

class OneProperty final : public Implements<IStringMap> {
 public:
  explicit OneProperty(std::int32_t number) {
    *std::to_chars(value, value + sizeof value - 1, number).ptr = '\0';
  }
  std::int32_t Count() override { return 1; }
  void Set(const char* /*key*/, const char* /*value*/) override {}
  const char* Get(const char* key) override {
    return std::strcmp(key, ItemProperty::Feature) == 0 ? value : nullptr;
  }
  void RemoveAll() override {}
  void Remove(const char* /*key*/) override {}

 private:
  char value[12];
};

std::tm Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  return local;
}

bool IsDateFormat(const char* format) {
  while ((format = std::strchr(format, '%')) != nullptr) {
    if (format[1] == '\0' || std::strchr(DateConversions, format[1]) == nullptr) {
      return false;
    }
    format += 2;
  }
  return true;
}

class FloorModule final : public ComparedModule<FloorModule> {
 public:
  using ComparedModule::ComparedModule;

  std::int32_t Initialise() override {
    StartReader(level, parameters[LogFile].inUse);
    ReportState();
    return 0;
  }

  std::int32_t SetParameter(const char* name, const char* value) override {
    Parameter* const parameter = FindParameter(name);
    if (parameter == nullptr) {
      return ResultUnknownParameter;
    }
    const std::size_t size = std::strlen(value);
    if (parameter->kind == Kind::Level) {
      std::int32_t number = 0;
      if (std::from_chars(value, value + size, number).ptr != value + size || number < 0 ||
          number > 5) {
        return ResultInvalidValue;
      }
      level = number;
    } else if (parameter->kind == Kind::Required) {
      if (size == 0) {
        return ResultValueMissing;
      }
    } else {
      char formatted[1024];
      const std::tm now = Now();
      if (!IsDateFormat(value)) {
        return ResultInvalidValue;
      }
      std::strftime(formatted, sizeof formatted, value, &now);
    }
    std::memcpy(parameter->inUse, value, size + 1);
    std::memcpy(parameter->asSet, value, size + 1);
    return ResultSuccess;
  }

  std::int32_t GetParameter(const char* name, const char** value) override {
    Parameter* const parameter = FindParameter(name);
    if (parameter == nullptr) {
      return ResultUnknownParameter;
    }
    *value = parameter->asSet;
    return ResultSuccess;
  }

  std::int32_t AddCondition(const char* /*name*/, const char* value) override {
    scripts.try_emplace(value);
    return ResultSuccess;
  }

  std::int32_t AddAction(const char* /*conditionName*/, const char* value,
                         const char* /*actionName*/, const char* script) override {
    scripts[value].push_back(script);
    return ResultSuccess;
  }

  void OnData(ReaderDataType type, std::int32_t length, const void* data) {
    const ReaderItem* const item = FindReaderItem(type);
    const bool plain = item->kind == ReaderItemKind::Text || item->kind == ReaderItemKind::Image;
    if (logger != nullptr) {
      StackText line;
      logger->Log(2, ItemTag, (line << "ItemName: " << (plain ? item->name : "")).Text());
    }
    if (plain) {
      host->SendData(item->name, item->kind == ReaderItemKind::Text ? ItemTypeText : ItemTypeImage,
                     length, data, nullptr, true);
    } else if (type == ReaderDataType::CodelineRecord) {
      Deliver(ItemName::InputSource, InputSource::Ocr);
      DeliverCodeline(static_cast<const char*>(data));
    } else if (type == ReaderDataType::AamvaBarcodeRecord) {
      DeliverLicence(static_cast<const char*>(data));
    } else {
      DeliverBarcode(item->name, *static_cast<const ReaderBarcodeData*>(data));
    }
  }

  void OnEvent(ReaderEventCode code) {
    host->ReportError("");
    const char* const name = ReaderEventNames[static_cast<std::size_t>(code)];
    if (logger != nullptr) {
      StackText line;
      logger->Log(2, EventTag, (line << "Event: " << name).Text());
    }
    if (const auto waiting = scripts.find(name); waiting != scripts.end()) {
      for (const char* const script : waiting->second) {
        if (host->SetActiveScript(script) != 0) {
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
    host->SendEvent(name);
    ReportState();
  }

 private:
  enum class Kind { Level, Required, Date };
  enum Position { LogLevel, LogFile, BirthFormat, ExpiryFormat, IssueFormat, BadChars };
  struct Parameter {
    const char* name;
    Kind kind;
    char inUse[64];
    char asSet[64];
  };

  Parameter* FindParameter(const char* name) {
    auto* const found = std::find_if(std::begin(parameters), std::end(parameters),
                                     [&](auto& row) { return std::strcmp(row.name, name) == 0; });
    return found != std::end(parameters) ? found : nullptr;
  }

  void ReportState() {
    host->ReportState(ReaderStateNames[static_cast<std::size_t>(HaldenReader_GetState())]);
  }

  void Deliver(std::string_view name, const char* value) {
    const std::size_t length = std::strlen(value);
    if (logger != nullptr) {
      StackText line;
      line << "ProcessStringDataItem - aName " << name << "  aValue "
           << std::string_view(value, length);
      logger->Log(2, TextTag, line.Text());
    }
    host->SendData(name.data(), ItemTypeText, static_cast<std::int32_t>(length), value, nullptr,
                   true);
  }

  void DeliverCharacter(std::string_view name, char character) {
    const char text[] = {character, '\0'};
    Deliver(name, text);
  }

  void DeliverDate(std::string_view name, ReaderDate date) {
    StackText text;
    text.TwoDigits(date.day) << "-";
    text.TwoDigits(date.month) << "-";
    Deliver(name, text.TwoDigits(date.year).Text());
  }

  void DeliverFormatted(std::string_view name, Position format, ReaderDate date, bool ahead) {
    const std::int32_t current = Now().tm_year;
    const std::int32_t ofCentury = current % 100;
    std::tm time{};
    time.tm_mday = std::clamp(date.day, 1, 31);
    time.tm_mon = std::clamp(date.month, 1, 12) - 1;
    time.tm_year = date.year + (ahead || date.year < ofCentury ? current - ofCentury : 0);
    char text[1024];
    std::strftime(text, sizeof text, parameters[format].inUse, &time);
    Deliver(name, text);
  }

  void DeliverMeasure(std::string_view name, std::int32_t value, std::int32_t unit) {
    StackText text;
    if (value != 0) {
      text << value << " " << ReaderMeasurementUnitNames[unit];
    }
    Deliver(name, text.Text());
  }

  void DeliverCodeline(const char* record) {
    const auto& fields = *reinterpret_cast<const ReaderCodelineData*>(record);
    if (std::strpbrk(fields.codeline, parameters[BadChars].inUse) != nullptr) {
      host->SendData(Signal::BadChars, ItemTypeText, 1, " ", nullptr, true);
    }
    for (const DeliveredText& text : CodelineLines) {
      Deliver({text.name, text.nameLength}, record + text.offset);
    }
    if (std::none_of(std::begin(RecognisedDocumentTypes), std::end(RecognisedDocumentTypes),
                     [&](const char* type) { return std::strcmp(type, fields.docType) == 0; })) {
      return;
    }
    DeliverDate(ItemName::CodelineDateOfBirth, fields.dateOfBirth);
    DeliverFormatted(ItemName::CodelineDateOfBirthFormatted, BirthFormat, fields.dateOfBirth,
                     false);
    DeliverDate(ItemName::CodelineExpiryDate, fields.expiryDate);
    DeliverFormatted(ItemName::CodelineExpiryDateFormatted, ExpiryFormat, fields.expiryDate, true);
    for (const DeliveredText& text : CodelineFields) {
      Deliver({text.name, text.nameLength}, record + text.offset);
    }
    DeliverCharacter(ItemName::CodelineShortSex, fields.shortSex);
  }

  void DeliverLicence(const char* record) {
    const auto& fields = *reinterpret_cast<const ReaderAamvaData*>(record);
    for (const DeliveredText& text : AamvaFields) {
      Deliver({text.name, text.nameLength}, record + text.offset);
    }
    DeliverCharacter(ItemName::LicenceShortSex, fields.shortSex);
    DeliverDate(ItemName::LicenceDateOfBirth, fields.dateOfBirth);
    DeliverFormatted(ItemName::LicenceDateOfBirthFormatted, BirthFormat, fields.dateOfBirth, false);
    DeliverDate(ItemName::LicenceIssueDate, fields.issueDate);
    DeliverFormatted(ItemName::LicenceIssueDateFormatted, IssueFormat, fields.issueDate, false);
    DeliverDate(ItemName::LicenceExpiryDate, fields.expiryDate);
    DeliverFormatted(ItemName::LicenceExpiryDateFormatted, ExpiryFormat, fields.expiryDate, true);
    DeliverMeasure(ItemName::LicenceHeight, fields.height, fields.heightUnit);
    DeliverMeasure(ItemName::LicenceWeight, fields.weight, fields.weightUnit);
    Deliver(ItemName::LicenceHairColor, ReaderHairColorNames[fields.hairColor]);
    Deliver(ItemName::LicenceEyeColor, ReaderEyeColorNames[fields.eyeColor]);
  }

  void DeliverBarcode(const char* name, const ReaderBarcodeData& barcode) {
    OneProperty properties(barcode.index);
    host->SendData(name, ReaderBarcodeItemTypes[barcode.format], barcode.length, barcode.data,
                   &properties, barcode.index + 1 == barcode.count);
  }

  std::int32_t level = 1;
  Parameter parameters[6] = {
      {ParameterName::LogLevel, Kind::Level, "1", ""},
      {ParameterName::LogFileName, Kind::Required, "FullPageOutputConduit.log", ""},
      {ParameterName::DateOfBirthFormat, Kind::Date, "%d-%m-%Y", ""},
      {ParameterName::ExpiryDateFormat, Kind::Date, "%d-%m-%Y", ""},
      {ParameterName::IssueDateFormat, Kind::Date, "%d-%m-%Y", ""},
      {ParameterName::BadChars, Kind::Required, "*_", ""},
  };
  /// Borrows the texts: the benchmark's texts outlive the module.
  std::unordered_map<std::string_view, std::vector<const char*>> scripts;
};

}  // namespace
}  // namespace conduit

std::int32_t CIM_GetInputModule(conduit::IModuleLogger* logger, conduit::IInputModule** module) {
  *module = new conduit::FloorModule(logger);
  return 0;
}

std::int32_t CIM_Destroy(conduit::IInputModule* module) {
  conduit::Destroy(module);
  return 0;
}
