#pragma once

#include <cstddef>

#include <conduit/ItemName.h>
#include <conduit/ReaderAamvaData.h>
#include <conduit/ReaderCodelineData.h>

namespace conduit {

/// A text field of a record and its item name, with the name's length as a constant.
struct DeliveredText {
  template <std::size_t Size>
  constexpr DeliveredText(const char (&name)[Size], std::size_t offset)
      : name(name), nameLength(Size - 1), offset(offset) {}

  const char* name;
  std::size_t nameLength;
  std::size_t offset;
};

inline constexpr DeliveredText CodelineLines[] = {
    {ItemName::CodelineData, offsetof(ReaderCodelineData, codeline)},
    {ItemName::CodelineLine1, offsetof(ReaderCodelineData, line1)},
    {ItemName::CodelineLine2, offsetof(ReaderCodelineData, line2)},
    {ItemName::CodelineLine3, offsetof(ReaderCodelineData, line3)},
};

inline constexpr DeliveredText CodelineFields[] = {
    {ItemName::CodelineDocId, offsetof(ReaderCodelineData, docId)},
    {ItemName::CodelineDocNumber, offsetof(ReaderCodelineData, docNumber)},
    {ItemName::CodelineDocType, offsetof(ReaderCodelineData, docType)},
    {ItemName::CodelineOptionalData1, offsetof(ReaderCodelineData, optionalData1)},
    {ItemName::CodelineOptionalData2, offsetof(ReaderCodelineData, optionalData2)},
    {ItemName::CodelineSurname, offsetof(ReaderCodelineData, surname)},
    {ItemName::CodelineForename, offsetof(ReaderCodelineData, forename)},
    {ItemName::CodelineForenames, offsetof(ReaderCodelineData, forenames)},
    {ItemName::CodelineIssuingState, offsetof(ReaderCodelineData, issuingState)},
    {ItemName::CodelineNationality, offsetof(ReaderCodelineData, nationality)},
    {ItemName::CodelineSecondName, offsetof(ReaderCodelineData, secondName)},
    {ItemName::CodelineSex, offsetof(ReaderCodelineData, sex)},
};

inline constexpr DeliveredText AamvaFields[] = {
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

inline constexpr const char* ItemTag = "FullPageInputModule::ProcessFullPageData";
inline constexpr const char* EventTag = "FullPageInputModule::ProcessFullPageEvent";
inline constexpr const char* TextTag = "FullPageInputModule::ProcessStringDataItem";
/// The conversions that the measured date formats may use.
inline constexpr const char* DateConversions = "aAbBcCdDeFgGhHIjmMnprRStTuUVwWxXyYzZ%";

}  // namespace conduit
