#include <algorithm>
#include <cstring>
#include <iterator>

#include "fullpage/DateFormat.h"
#include "fullpage/FullPageInputModule.h"
#include "fullpage/RecordText.h"
#include "interfaces/ResultCode.h"

namespace conduit {
namespace {

/// Delivered for every document.
constexpr RecordText CodelineTexts[] = {
    {"CODELINE_DATA", offsetof(ReaderCodelineData, codeline)},
    {"CODELINE_LINE_1", offsetof(ReaderCodelineData, line1)},
    {"CODELINE_LINE_2", offsetof(ReaderCodelineData, line2)},
    {"CODELINE_LINE_3", offsetof(ReaderCodelineData, line3)},
};

/// Delivered for a recognised document, behind its dates.
constexpr RecordText DocumentTexts[] = {
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

constexpr const char* RecognisedTypes[] = {
    "VISA", "RESIDENCE CARD", "PASSPORT", "IDENTITY CARD", "DRIVING LICENCE",
};

bool IsUnknownDocument(const char* docType) {
  return docType[0] == '\0' || std::strcmp(docType, "UNKNOWN DOCUMENT") == 0;
}

bool IsRecognised(const char* docType) {
  return std::any_of(std::begin(RecognisedTypes), std::end(RecognisedTypes),
                     [docType](const char* type) { return std::strcmp(docType, type) == 0; });
}

bool HasBadCharacter(const char* codeline, const BaseString<char>& badChars) {
  return std::strpbrk(codeline, badChars.buffer) != nullptr;
}

}  // namespace

void FullPageInputModule::ProcessCodelineData(const ReaderCodelineData& record) {
  const char* const docType = TextAt(record, offsetof(ReaderCodelineData, docType));
  if (IsUnknownDocument(docType) && SignalStopsRecord("UNKNOWN_DOCUMENT")) {
    return;
  }
  const char* const codeline = TextAt(record, offsetof(ReaderCodelineData, codeline));
  if (HasBadCharacter(codeline, BadChars) && SignalStopsRecord("BAD_CHARS")) {
    return;
  }
  for (const RecordText& text : CodelineTexts) {
    ProcessStringDataItem(text.itemName, TextAt(record, text.offset));
  }
  if (!IsRecognised(docType)) {
    return;
  }
  const ReaderDate birth = record.dateOfBirth;
  ProcessStringDataItem("CODELINE_DATE_OF_BIRTH_STR", RawDate(birth).text);
  ProcessStringDataItem("CODELINE_DATE_OF_BIRTH_STR_FORMATTED",
                        FormatDate(DateOfBirthFormat, birth.day, birth.month, birth.year, false));
  const ReaderDate expiry = record.expiryDate;
  ProcessStringDataItem("CODELINE_EXPIRY_DATE_STR", RawDate(expiry).text);
  ProcessStringDataItem("CODELINE_EXPIRY_DATE_STR_FORMATTED",
                        FormatDate(ExpiryDateFormat, expiry.day, expiry.month, expiry.year, true));
  for (const RecordText& text : DocumentTexts) {
    ProcessStringDataItem(text.itemName, TextAt(record, text.offset));
  }
  ProcessStringDataItem("CODELINE_SHORT_SEX", record.shortSex);
}

bool FullPageInputModule::SignalStopsRecord(const char* name) {
  return host->SendData(name, ItemTypeText, 1, " ", nullptr, true) == StopRecord;
}

}  // namespace conduit
