#include <cstring>

#include "tests/support/ModuleTest.h"
#include <conduit/ReaderCodelineData.h>

namespace conduit {
namespace {

using testing::Contains;

template <std::size_t Size>
void Put(char (&field)[Size], const std::string& text) {
  ASSERT_LT(text.size(), Size);
  std::memcpy(field, text.c_str(), text.size() + 1);
}

class CodelineTest : public ModuleTest {
 protected:
  CodelineTest() {
    Put(record.codeline, "P<UTOERIKSSON<<ANNA<MARIA");
    Put(record.line1, "line 1");
    Put(record.line2, "line *2_");
    Put(record.docId, "P");
    Put(record.docType, "PASSPORT");
    Put(record.surname, "ERIKSSON");
    Put(record.forename, "ANNA");
    Put(record.secondName, "MARIA");
    Put(record.forenames, "ANNA MARIA");
    record.dateOfBirth = {5, 11, 85};
    record.expiryDate = {0, 13, 30};
    Put(record.issuingState, "UTO");
    Put(record.nationality, "XXA");
    Put(record.docNumber, "L898902C3");
    Put(record.sex, "FEMALE");
    record.shortSex = 'F';
    Put(record.optionalData1, "ZE184226B");
    Put(record.optionalData2, "second");
  }

  Lines ItemsAfter(ReaderDataType type) {
    reader.SendRecord(type, record);
    return journal.Take();
  }

  /// The expected lines of the items that every document has.
  Lines CodelineItems() const {
    Lines expected = {"log 2 FullPageInputModule::ProcessFullPageData: ItemName: "};
    ExpectItem(expected, "INPUT_SOURCE", "OCR");
    ExpectItem(expected, "CODELINE_DATA", record.codeline);
    ExpectItem(expected, "CODELINE_LINE_1", "line 1");
    ExpectItem(expected, "CODELINE_LINE_2", "line *2_");
    ExpectItem(expected, "CODELINE_LINE_3", "");
    return expected;
  }

  ReaderCodelineData record{};
};

TEST_F(CodelineTest, RecognisedDocumentIsDeliveredAsTwentyOneItems) {
  module->SetParameter("ExpiryDateFormat", "%Y%m%d");
  journal.Take();
  Lines expected = CodelineItems();
  ExpectItem(expected, "CODELINE_DATE_OF_BIRTH_STR", "05-11-85");
  ExpectItem(expected, "CODELINE_DATE_OF_BIRTH_STR_FORMATTED", "05-11-1985");
  ExpectItem(expected, "CODELINE_EXPIRY_DATE_STR", "00-13-30");
  ExpectItem(expected, "CODELINE_EXPIRY_DATE_STR_FORMATTED", "20301201");
  ExpectItem(expected, "CODELINE_DOC_ID", "P");
  ExpectItem(expected, "CODELINE_DOC_NUMBER", "L898902C3");
  ExpectItem(expected, "CODELINE_DOC_TYPE", "PASSPORT");
  ExpectItem(expected, "CODELINE_OPTIONAL_DATA_1", "ZE184226B");
  ExpectItem(expected, "CODELINE_OPTIONAL_DATA_2", "second");
  ExpectItem(expected, "CODELINE_SURNAME", "ERIKSSON");
  ExpectItem(expected, "CODELINE_FORENAME", "ANNA");
  ExpectItem(expected, "CODELINE_FORENAMES", "ANNA MARIA");
  ExpectItem(expected, "CODELINE_ISSUING_STATE", "UTO");
  ExpectItem(expected, "CODELINE_NATIONALITY", "XXA");
  ExpectItem(expected, "CODELINE_SECOND_NAME", "MARIA");
  ExpectItem(expected, "CODELINE_SEX", "FEMALE");
  ExpectItem(expected, "CODELINE_SHORT_SEX", "F");
  ASSERT_EQ(expected.size(), 1U + 2 * (1 + 21));
  EXPECT_EQ(ItemsAfter(ReaderDataType::CodelineRecord), expected);

  // From a source other than the page: the same without INPUT_SOURCE.
  expected.erase(expected.begin() + 1, expected.begin() + 3);
  EXPECT_EQ(ItemsAfter(ReaderDataType::ChipCodelineRecord), expected);

  record.shortSex = '\0';
  EXPECT_EQ(ItemsAfter(ReaderDataType::ChipCodelineRecord).back(),
            "SendData CODELINE_SHORT_SEX 4 0 '' last");
}

TEST_F(CodelineTest, FieldsAreDeliveredUnchanged) {
  record.dateOfBirth = {-1, 11, 100};
  record.shortSex = '\xE9';
  const Lines lines = ItemsAfter(ReaderDataType::ChipCodelineRecord);
  EXPECT_THAT(lines, Contains("SendData CODELINE_DATE_OF_BIRTH_STR 4 10 '-01-11-100' last"))
      << "a codeline knows no absent date";
  EXPECT_EQ(lines.back(), "SendData CODELINE_SHORT_SEX 4 1 '\\xE9' last");
  // The host gets a pointer into the record, not a copy.
  host.stopAt = "CODELINE_SEX";
  const void* sex = nullptr;
  host.onStop = [&] { sex = host.lastData; };
  ItemsAfter(ReaderDataType::ChipCodelineRecord);
  EXPECT_EQ(sex, record.sex);
}

TEST_F(CodelineTest, HostAnswersToItemsAreIgnored) {
  host.otherAnswer = 1;
  EXPECT_EQ(ItemsAfter(ReaderDataType::CodelineRecord).size(), 1U + 2 * (1 + 21));
}

TEST_F(CodelineTest, DocumentTypeDecidesWhatIsDelivered) {
  for (const char* const type :
       {"VISA", "RESIDENCE CARD", "PASSPORT", "IDENTITY CARD", "DRIVING LICENCE"}) {
    Put(record.docType, type);
    EXPECT_EQ(ItemsAfter(ReaderDataType::CodelineRecord).size(), 1U + 2 * (1 + 21)) << type;
  }
  for (const char* const type : {"Passport", "PASSPORT ", "PASS", "unknown document"}) {
    Put(record.docType, type);
    EXPECT_EQ(ItemsAfter(ReaderDataType::CodelineRecord), CodelineItems()) << type;
  }
}

TEST_F(CodelineTest, HostMayStopAnUnknownDocument) {
  const std::string signal = "SendData UNKNOWN_DOCUMENT 4 1 ' ' last";
  for (const char* const type : {"", "UNKNOWN DOCUMENT"}) {
    Put(record.docType, type);
    Lines expected = CodelineItems();
    expected.insert(expected.begin() + 3, signal);
    for (const std::int32_t goOn : {0, 2, -1}) {
      host.otherAnswer = goOn;
      EXPECT_EQ(ItemsAfter(ReaderDataType::CodelineRecord), expected);
    }
    host.stopAt = "UNKNOWN_DOCUMENT";
    expected.resize(4);
    EXPECT_EQ(ItemsAfter(ReaderDataType::CodelineRecord), expected);
    host.stopAt.clear();
  }
}

TEST_F(CodelineTest, BadCharacterInTheCodelineIsSignalledOnce) {
  const std::string signal = "SendData BAD_CHARS 4 1 ' ' last";
  const auto signals = [&] {
    const Lines lines = ItemsAfter(ReaderDataType::CodelineRecord);
    return std::count(lines.begin(), lines.end(), signal);
  };
  EXPECT_EQ(signals(), 0) << "the single lines are not screened";
  Put(record.codeline, "a_b*c_d*");
  Lines expected = CodelineItems();
  expected.insert(expected.begin() + 3, signal);
  host.stopAt = "CODELINE_DATA";
  Lines lines = ItemsAfter(ReaderDataType::CodelineRecord);
  lines.resize(expected.size());
  EXPECT_EQ(lines, expected);

  host.stopAt = "BAD_CHARS";
  expected.resize(4);
  EXPECT_EQ(ItemsAfter(ReaderDataType::CodelineRecord), expected);

  // UNKNOWN_DOCUMENT precedes BAD_CHARS.
  Put(record.docType, "");
  host.stopAt = "UNKNOWN_DOCUMENT";
  expected[3] = "SendData UNKNOWN_DOCUMENT 4 1 ' ' last";
  EXPECT_EQ(ItemsAfter(ReaderDataType::CodelineRecord), expected);
  host.stopAt.clear();
  Put(record.docType, "PASSPORT");

  module->SetParameter("BadChars", "#;<");
  EXPECT_EQ(signals(), 0);
  Put(record.codeline, "a<");
  EXPECT_EQ(signals(), 1) << "by the last of them";
  Put(record.codeline, "");
  EXPECT_EQ(signals(), 0);
}

}  // namespace
}  // namespace conduit
