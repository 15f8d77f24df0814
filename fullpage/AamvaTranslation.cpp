#include <charconv>
#include <iterator>
#include <string_view>

#include "fullpage/DateFormat.h"
#include "fullpage/FullPageInputModule.h"
#include "fullpage/RecordText.h"
#include "runtime/DecimalText.h"
#include "runtime/EntryAt.h"

namespace conduit {
namespace {

constexpr RecordText AamvaTexts[] = {
    {"AAMVA_PARSED_LICENCENUMBER", offsetof(ReaderAamvaData, licenceNumber)},
    {"AAMVA_PARSED_FULLNAME", offsetof(ReaderAamvaData, fullName)},
    {"AAMVA_PARSED_SURNAME", offsetof(ReaderAamvaData, surname)},
    {"AAMVA_PARSED_FORENAME", offsetof(ReaderAamvaData, forename)},
    {"AAMVA_PARSED_MIDDLENAME", offsetof(ReaderAamvaData, middleName)},
    {"AAMVA_PARSED_NAMESUFFIX", offsetof(ReaderAamvaData, nameSuffix)},
    {"AAMVA_PARSED_GIVENNAMES", offsetof(ReaderAamvaData, givenNames)},
    {"AAMVA_PARSED_SEX", offsetof(ReaderAamvaData, sex)},
    {"AAMVA_PARSED_ADDRESS_STREET", offsetof(ReaderAamvaData, addressStreet)},
    {"AAMVA_PARSED_ADDRESS_CITY", offsetof(ReaderAamvaData, addressCity)},
    {"AAMVA_PARSED_ADDRESS_STATE", offsetof(ReaderAamvaData, addressState)},
    {"AAMVA_PARSED_ADDRESS_POSTALCODE", offsetof(ReaderAamvaData, addressPostalCode)},
    {"AAMVA_PARSED_ADDRESS_COUNTRY", offsetof(ReaderAamvaData, addressCountry)},
};

// By the codes of ReaderMeasurementUnit, ReaderHairColor and ReaderEyeColor.
constexpr const char* MeasurementUnitNames[] = {"Unknown", "in", "cm", "lb", "kg"};
constexpr const char* HairColorNames[] = {
    "Unknown", "Bald", "Black", "Blond", "Brown", "Grey", "Red_Auburn", "Sandy", "White",
};
constexpr const char* EyeColorNames[] = {
    "Unknown", "Black", "Blue", "Brown", "Grey", "Green", "Hazel", "Maroon", "Pink", "Dichromatic",
};

template <std::size_t Size>
const char* NameOf(const char* const (&names)[Size], std::int32_t code) {
  return EntryAt(names, code, names[0]);
}

bool IsAbsent(ReaderDate date) {
  return date.day == ReaderDateAbsent || date.month == ReaderDateAbsent ||
         date.year == ReaderDateAbsent;
}

RawDateText RawDateOrEmpty(ReaderDate date) {
  return IsAbsent(date) ? RawDateText{} : RawDate(date);
}

/// The longest is a number with the longest of the units.
struct MeasurementText {
  char text[LongestDecimal + sizeof " Unknown"] = {};
};

/// The unit table is one for heights and weights: a code is taken as it comes.
MeasurementText Measurement(std::int32_t value, std::int32_t unit) {
  MeasurementText measured;
  if (value != 0) {
    char* const end = std::to_chars(measured.text, std::end(measured.text), value).ptr;
    *end = ' ';
    const std::string_view name = NameOf(MeasurementUnitNames, unit);
    name.copy(end + 1, name.size());
  }
  return measured;
}

}  // namespace

void FullPageInputModule::ProcessAamvaData(const ReaderAamvaData& record) {
  for (const RecordText& text : AamvaTexts) {
    ProcessStringDataItem(text.itemName, TextAt(record, text.offset));
  }
  ProcessStringDataItem("AAMVA_PARSED_SHORTSEX", record.shortSex);

  // An absent date still has a formatted twin, made of its clamped parts.
  const ReaderDate birth = record.dateOfBirth;
  ProcessStringDataItem("AAMVA_PARSED_DATEOFBIRTH", RawDateOrEmpty(birth).text);
  ProcessStringDataItem("AAMVA_PARSED_DATEOFBIRTH_FORMATTED",
                        FormatDate(DateOfBirthFormat, birth.day, birth.month, birth.year, false));
  const ReaderDate issue = record.issueDate;
  ProcessStringDataItem("AAMVA_PARSED_ISSUEDATE", RawDateOrEmpty(issue).text);
  ProcessStringDataItem("AAMVA_PARSED_ISSUEDATE_FORMATTED",
                        FormatDate(IssueDateFormat, issue.day, issue.month, issue.year, false));
  const ReaderDate expiry = record.expiryDate;
  ProcessStringDataItem("AAMVA_PARSED_EXPIRYDATE", RawDateOrEmpty(expiry).text);
  ProcessStringDataItem("AAMVA_PARSED_EXPIRYDATE_FORMATTED",
                        FormatDate(ExpiryDateFormat, expiry.day, expiry.month, expiry.year, true));

  ProcessStringDataItem("AAMVA_PARSED_HEIGHT", Measurement(record.height, record.heightUnit).text);
  ProcessStringDataItem("AAMVA_PARSED_WEIGHT", Measurement(record.weight, record.weightUnit).text);
  ProcessStringDataItem("AAMVA_PARSED_HAIR_COLOR", NameOf(HairColorNames, record.hairColor));
  ProcessStringDataItem("AAMVA_PARSED_EYE_COLOR", NameOf(EyeColorNames, record.eyeColor));
}

}  // namespace conduit
