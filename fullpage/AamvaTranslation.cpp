#include "fullpage/DateFormat.h"
#include "fullpage/FullPageInputModule.h"
#include "fullpage/RecordText.h"
#include "runtime/EntryAt.h"
#include "runtime/TextBuilder.h"
#include <conduit/ItemName.h>

namespace conduit {
namespace {

constexpr RecordText AamvaTexts[] = {
    {ItemName::LicenceNumber, offsetof(ReaderAamvaData, licenceNumber)},
    {ItemName::LicenceFullName, offsetof(ReaderAamvaData, fullName)},
    {ItemName::LicenceSurname, offsetof(ReaderAamvaData, surname)},
    {ItemName::LicenceForename, offsetof(ReaderAamvaData, forename)},
    {ItemName::LicenceMiddleName, offsetof(ReaderAamvaData, middleName)},
    {ItemName::LicenceNameSuffix, offsetof(ReaderAamvaData, nameSuffix)},
    {ItemName::LicenceGivenNames, offsetof(ReaderAamvaData, givenNames)},
    {ItemName::LicenceSex, offsetof(ReaderAamvaData, sex)},
    {ItemName::LicenceStreet, offsetof(ReaderAamvaData, addressStreet)},
    {ItemName::LicenceCity, offsetof(ReaderAamvaData, addressCity)},
    {ItemName::LicenceState, offsetof(ReaderAamvaData, addressState)},
    {ItemName::LicencePostalCode, offsetof(ReaderAamvaData, addressPostalCode)},
    {ItemName::LicenceCountry, offsetof(ReaderAamvaData, addressCountry)},
};

template <std::size_t Size>
const char* NameOf(const char* const (&names)[Size], std::int32_t code) {
  return EntryAt(names, code, names[0]);
}

bool IsAbsent(ReaderDate date) {
  return date.day == ReaderDateAbsent || date.month == ReaderDateAbsent ||
         date.year == ReaderDateAbsent;
}

}  // namespace

void FullPageInputModule::ProcessAamvaData(const ReaderAamvaData& record) {
  for (const RecordText& text : AamvaTexts) {
    ProcessStringDataItem(text.itemName, TextAt(record, text.offset));
  }
  ProcessStringDataItem(ItemName::LicenceShortSex, record.shortSex);

  // The formatted item of an absent date is made from its clamped parts.
  const ReaderDate birth = record.dateOfBirth;
  ProcessRawDate(ItemName::LicenceDateOfBirth, birth, IsAbsent(birth));
  ProcessFormattedDate(ItemName::LicenceDateOfBirthFormatted, DateOfBirthFormat, birth, false);
  const ReaderDate issue = record.issueDate;
  ProcessRawDate(ItemName::LicenceIssueDate, issue, IsAbsent(issue));
  ProcessFormattedDate(ItemName::LicenceIssueDateFormatted, IssueDateFormat, issue, false);
  const ReaderDate expiry = record.expiryDate;
  ProcessRawDate(ItemName::LicenceExpiryDate, expiry, IsAbsent(expiry));
  ProcessFormattedDate(ItemName::LicenceExpiryDateFormatted, ExpiryDateFormat, expiry, true);

  ProcessMeasurement(ItemName::LicenceHeight, record.height, record.heightUnit);
  ProcessMeasurement(ItemName::LicenceWeight, record.weight, record.weightUnit);
  ProcessStringDataItem(ItemName::LicenceHairColor, NameOf(ReaderHairColorNames, record.hairColor));
  ProcessStringDataItem(ItemName::LicenceEyeColor, NameOf(ReaderEyeColorNames, record.eyeColor));
}

/// Heights and weights share the unit table: no code is refused for its dimension.
void FullPageInputModule::ProcessMeasurement(std::string_view name, std::int32_t value,
                                             std::int32_t unit) {
  TextBuilder text;
  if (value != 0) {
    text << value << " " << NameOf(ReaderMeasurementUnitNames, unit);
  }
  ProcessStringDataItem(name, text);
}

}  // namespace conduit
