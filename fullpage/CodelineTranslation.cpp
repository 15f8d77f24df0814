#include <algorithm>
#include <cstring>
#include <iterator>

#include "fullpage/DateFormat.h"
#include "fullpage/FullPageInputModule.h"
#include "fullpage/RecordText.h"
#include <conduit/ItemName.h>
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

/// Delivered for every document.
constexpr RecordText CodelineTexts[] = {
    {ItemName::CodelineData, offsetof(ReaderCodelineData, codeline)},
    {ItemName::CodelineLine1, offsetof(ReaderCodelineData, line1)},
    {ItemName::CodelineLine2, offsetof(ReaderCodelineData, line2)},
    {ItemName::CodelineLine3, offsetof(ReaderCodelineData, line3)},
};

/// Delivered for a recognised document, after its dates.
constexpr RecordText DocumentTexts[] = {
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

bool IsUnknownDocument(const char* docType) {
  return docType[0] == '\0' || std::strcmp(docType, DocumentType::Unknown) == 0;
}

bool IsRecognised(const char* docType) {
  return std::any_of(std::begin(RecognisedDocumentTypes), std::end(RecognisedDocumentTypes),
                     [docType](const char* type) { return std::strcmp(docType, type) == 0; });
}

bool HasBadCharacter(const char* codeline, const BaseString<char>& badChars) {
  return std::strpbrk(codeline, badChars.buffer) != nullptr;
}

}  // namespace

void FullPageInputModule::ProcessCodelineData(const ReaderCodelineData& record) {
  const char* const docType = TextAt(record, offsetof(ReaderCodelineData, docType));
  if (IsUnknownDocument(docType) && SignalStopsRecord(Signal::UnknownDocument)) {
    return;
  }
  const char* const codeline = TextAt(record, offsetof(ReaderCodelineData, codeline));
  if (HasBadCharacter(codeline, BadChars) && SignalStopsRecord(Signal::BadChars)) {
    return;
  }
  for (const RecordText& text : CodelineTexts) {
    ProcessStringDataItem(text.itemName, TextAt(record, text.offset));
  }
  if (!IsRecognised(docType)) {
    return;
  }
  const ReaderDate birth = record.dateOfBirth;
  ProcessRawDate(ItemName::CodelineDateOfBirth, birth, false);
  ProcessFormattedDate(ItemName::CodelineDateOfBirthFormatted, DateOfBirthFormat, birth, false);
  const ReaderDate expiry = record.expiryDate;
  ProcessRawDate(ItemName::CodelineExpiryDate, expiry, false);
  ProcessFormattedDate(ItemName::CodelineExpiryDateFormatted, ExpiryDateFormat, expiry, true);
  for (const RecordText& text : DocumentTexts) {
    ProcessStringDataItem(text.itemName, TextAt(record, text.offset));
  }
  ProcessStringDataItem(ItemName::CodelineShortSex, record.shortSex);
}

bool FullPageInputModule::SignalStopsRecord(const char* name) {
  return host->SendData(name, ItemTypeText, 1, " ", nullptr, true) == StopRecord;
}

}  // namespace conduit
