#pragma once  // self-contained; C++17

#include <cstddef>
#include <cstdint>

#include "ReaderDate.h"

namespace conduit {

/// Unit code of a height or a weight in ReaderAamvaData.
enum class ReaderMeasurementUnit : std::int32_t {
  Unknown = 0,
  Inch = 1,
  Centimetre = 2,
  Pound = 3,
  Kilogram = 4,
};

/// The text of each unit, indexed by its code. In this table and the two below, a code
/// outside the table has the text of code 0.
inline constexpr const char* ReaderMeasurementUnitNames[] = {"Unknown", "in", "cm", "lb", "kg"};
static_assert(sizeof ReaderMeasurementUnitNames / sizeof *ReaderMeasurementUnitNames ==
              static_cast<std::int32_t>(ReaderMeasurementUnit::Kilogram) + 1);

enum class ReaderHairColor : std::int32_t {
  Unknown = 0,
  Bald = 1,
  Black = 2,
  Blond = 3,
  Brown = 4,
  Grey = 5,
  RedAuburn = 6,
  Sandy = 7,
  White = 8,
};

inline constexpr const char* ReaderHairColorNames[] = {
    "Unknown", "Bald", "Black", "Blond", "Brown", "Grey", "Red_Auburn", "Sandy", "White",
};
static_assert(sizeof ReaderHairColorNames / sizeof *ReaderHairColorNames ==
              static_cast<std::int32_t>(ReaderHairColor::White) + 1);

enum class ReaderEyeColor : std::int32_t {
  Unknown = 0,
  Black = 1,
  Blue = 2,
  Brown = 3,
  Grey = 4,
  Green = 5,
  Hazel = 6,
  Maroon = 7,
  Pink = 8,
  Dichromatic = 9,
};

inline constexpr const char* ReaderEyeColorNames[] = {
    "Unknown", "Black", "Blue", "Brown", "Grey", "Green", "Hazel", "Maroon", "Pink", "Dichromatic",
};
static_assert(sizeof ReaderEyeColorNames / sizeof *ReaderEyeColorNames ==
              static_cast<std::int32_t>(ReaderEyeColor::Dichromatic) + 1);

#pragma pack(push, 1)

/// The holder's data of a driving licence or identity card, from the data elements
/// of the AAMVA DL/ID Card Design Standard. Texts are NUL-terminated bytes,
/// integers little-endian. The reader library owns the record; it is valid during
/// the data callback only and may be unaligned.
struct ReaderAamvaData {
  char licenceNumber[3000];
  char fullName[3000];
  char surname[3000];
  char forename[3000];
  char middleName[3000];
  char nameSuffix[4];
  char givenNames[3000];
  char sex[8];
  char shortSex;  ///< one character; NUL when absent
  ReaderDate dateOfBirth;
  ReaderDate issueDate;
  ReaderDate expiryDate;
  char addressStreet[3000];
  char addressCity[3000];
  char addressState[3000];
  char addressPostalCode[3000];
  char addressCountry[4];
  std::int32_t height;  ///< 0 when absent
  std::int32_t heightUnit;
  std::int32_t weight;  ///< 0 when absent
  std::int32_t weightUnit;
  std::int32_t hairColor;
  std::int32_t eyeColor;
};

#pragma pack(pop)

static_assert(offsetof(ReaderAamvaData, licenceNumber) == 0);
static_assert(offsetof(ReaderAamvaData, fullName) == 3000);
static_assert(offsetof(ReaderAamvaData, surname) == 6000);
static_assert(offsetof(ReaderAamvaData, forename) == 9000);
static_assert(offsetof(ReaderAamvaData, middleName) == 12000);
static_assert(offsetof(ReaderAamvaData, nameSuffix) == 15000);
static_assert(offsetof(ReaderAamvaData, givenNames) == 15004);
static_assert(offsetof(ReaderAamvaData, sex) == 18004);
static_assert(offsetof(ReaderAamvaData, shortSex) == 18012);
static_assert(offsetof(ReaderAamvaData, dateOfBirth) == 18013);
static_assert(offsetof(ReaderAamvaData, issueDate) == 18025);
static_assert(offsetof(ReaderAamvaData, expiryDate) == 18037);
static_assert(offsetof(ReaderAamvaData, addressStreet) == 18049);
static_assert(offsetof(ReaderAamvaData, addressCity) == 21049);
static_assert(offsetof(ReaderAamvaData, addressState) == 24049);
static_assert(offsetof(ReaderAamvaData, addressPostalCode) == 27049);
static_assert(offsetof(ReaderAamvaData, addressCountry) == 30049);
static_assert(offsetof(ReaderAamvaData, height) == 30053);
static_assert(offsetof(ReaderAamvaData, heightUnit) == 30057);
static_assert(offsetof(ReaderAamvaData, weight) == 30061);
static_assert(offsetof(ReaderAamvaData, weightUnit) == 30065);
static_assert(offsetof(ReaderAamvaData, hairColor) == 30069);
static_assert(offsetof(ReaderAamvaData, eyeColor) == 30073);
static_assert(sizeof(ReaderAamvaData) == 30077 && alignof(ReaderAamvaData) == 1);

}  // namespace conduit
