#pragma once  // self-contained; C++17

#include <cstddef>
#include <cstdint>

#include "ReaderDate.h"

namespace conduit {

#pragma pack(push, 1)

/// A decoded codeline (machine-readable zone, MRZ). Texts are NUL-terminated bytes,
/// integers little-endian. The reader library owns the record; it is valid during
/// the data callback only and may be unaligned.
struct ReaderCodelineData {
  char codeline[204];  ///< the whole codeline text
  char line1[200];
  char line2[200];
  char line3[200];
  char docId[40];
  char docType[40];  ///< "PASSPORT", "VISA", ...; empty when not identified
  char surname[40];
  char forename[40];
  char secondName[40];
  char forenames[40];
  ReaderDate dateOfBirth;
  ReaderDate expiryDate;
  char issuingState[40];
  char nationality[40];
  char docNumber[40];
  char sex[40];
  char shortSex;  ///< one character; NUL when absent
  char optionalData1[40];
  char optionalData2[40];  ///< the last field: a reader may end the record at its NUL
};

#pragma pack(pop)

static_assert(offsetof(ReaderCodelineData, codeline) == 0);
static_assert(offsetof(ReaderCodelineData, line1) == 204);
static_assert(offsetof(ReaderCodelineData, line2) == 404);
static_assert(offsetof(ReaderCodelineData, line3) == 604);
static_assert(offsetof(ReaderCodelineData, docId) == 804);
static_assert(offsetof(ReaderCodelineData, docType) == 844);
static_assert(offsetof(ReaderCodelineData, surname) == 884);
static_assert(offsetof(ReaderCodelineData, forename) == 924);
static_assert(offsetof(ReaderCodelineData, secondName) == 964);
static_assert(offsetof(ReaderCodelineData, forenames) == 1004);
static_assert(offsetof(ReaderCodelineData, dateOfBirth) == 1044);
static_assert(offsetof(ReaderCodelineData, expiryDate) == 1056);
static_assert(offsetof(ReaderCodelineData, issuingState) == 1068);
static_assert(offsetof(ReaderCodelineData, nationality) == 1108);
static_assert(offsetof(ReaderCodelineData, docNumber) == 1148);
static_assert(offsetof(ReaderCodelineData, sex) == 1188);
static_assert(offsetof(ReaderCodelineData, shortSex) == 1228);
static_assert(offsetof(ReaderCodelineData, optionalData1) == 1229);
static_assert(offsetof(ReaderCodelineData, optionalData2) == 1269);
static_assert(alignof(ReaderCodelineData) == 1);

}  // namespace conduit
