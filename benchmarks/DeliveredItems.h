#pragma once

#include <cstddef>

#include "interfaces/ReaderAamvaData.h"
#include "interfaces/ReaderCodelineData.h"

namespace conduit {

/// A text field of a record and the item that it becomes, with the length of its
/// name, which a compiler knows.
struct DeliveredText {
  template <std::size_t Size>
  constexpr DeliveredText(const char (&name)[Size], std::size_t offset)
      : name(name), nameLength(Size - 1), offset(offset) {}

  const char* name;
  std::size_t nameLength;
  std::size_t offset;
};

inline constexpr DeliveredText CodelineLines[] = {
    {"CODELINE_DATA", offsetof(ReaderCodelineData, codeline)},
    {"CODELINE_LINE_1", offsetof(ReaderCodelineData, line1)},
    {"CODELINE_LINE_2", offsetof(ReaderCodelineData, line2)},
    {"CODELINE_LINE_3", offsetof(ReaderCodelineData, line3)},
};

inline constexpr DeliveredText CodelineFields[] = {
    {"CODELINE_DOC_ID", offsetof(ReaderCodelineData, docId)},
    {"CODELINE_DOC_NUMBER", offsetof(ReaderCodelineData, docNumber)},
    {"CODELINE_DOC_TYPE", offsetof(ReaderCodelineData, docType)},
    {"CODELINE_OPTIONAL_DATA_1", offsetof(ReaderCodelineData, optionalData1)},
    {"CODELINE_OPTIONAL_DATA_2", offsetof(ReaderCodelineData, optionalData2)},
    {"CODELINE_SURNAME", offsetof(ReaderCodelineData, surname)},
    {"CODELINE_FORENAME", offsetof(ReaderCodelineData, forename)},
    {"CODELINE_FORENAMES", offsetof(ReaderCodelineData, forenames)},
    {"CODELINE_ISSUING_STATE", offsetof(ReaderCodelineData, issuingState)},
    {"CODELINE_NATIONALITY", offsetof(ReaderCodelineData, nationality)},
    {"CODELINE_SECOND_NAME", offsetof(ReaderCodelineData, secondName)},
    {"CODELINE_SEX", offsetof(ReaderCodelineData, sex)},
};

inline constexpr DeliveredText AamvaFields[] = {
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

inline constexpr const char* UnitWords[] = {"Unknown", "in", "cm", "lb", "kg"};
inline constexpr const char* HairWords[] = {
    "Unknown", "Bald", "Black", "Blond", "Brown", "Grey", "Red_Auburn", "Sandy", "White",
};
inline constexpr const char* EyeWords[] = {
    "Unknown", "Black", "Blue", "Brown", "Grey", "Green", "Hazel", "Maroon", "Pink", "Dichromatic",
};

inline constexpr const char* ItemTag = "FullPageInputModule::ProcessFullPageData";
inline constexpr const char* EventTag = "FullPageInputModule::ProcessFullPageEvent";
inline constexpr const char* TextTag = "FullPageInputModule::ProcessStringDataItem";
/// The conversions that the measured date formats may use, and no others.
inline constexpr const char* DateConversions = "aAbBcCdDeFgGhHIjmMnprRStTuUVwWxXyYzZ%";

}  // namespace conduit
