#include <cstring>
#include <memory>

#include "tests/support/ModuleTest.h"
#include <conduit/ReaderAamvaData.h>

namespace conduit {
namespace {

class AamvaTest : public ModuleTest {
 protected:
  AamvaTest() {
    std::strcpy(record->licenceNumber, "T64235789");
    std::strcpy(record->fullName, "MICHAEL M MOTORIST");
    std::strcpy(record->surname, "MOTORIST");
    std::strcpy(record->forename, "MICHAEL");
    std::strcpy(record->middleName, "M");
    std::strcpy(record->nameSuffix, "JR");
    std::strcpy(record->givenNames, "MICHAEL M");
    std::strcpy(record->sex, "MALE");
    record->shortSex = 'M';
    record->dateOfBirth = {5, 11, 85};
    record->issueDate = {1, 2, 99};
    record->expiryDate = {3, 4, 30};
    std::strcpy(record->addressStreet, "2300 WEST BROAD STREET");
    std::strcpy(record->addressCity, "RICHMOND");
    std::strcpy(record->addressState, "VA");
    std::strcpy(record->addressPostalCode, "232690000");
    std::strcpy(record->addressCountry, "USA");
    record->height = 178;
    record->heightUnit = 2;
    record->weight = 180;
    record->weightUnit = 3;
    record->hairColor = 6;
    record->eyeColor = 9;
  }

  /// Sends the record and returns the value of an item.
  std::string ValueOf(const std::string& name) {
    reader.SendRecord(ReaderDataType::AamvaBarcodeRecord, *record);
    for (const std::string& line : journal.Take()) {
      if (line.rfind("SendData " + name + " ", 0) == 0) {
        const auto first = line.find('\'') + 1;
        return line.substr(first, line.rfind('\'') - first);
      }
    }
    return "no such item";
  }

  std::unique_ptr<ReaderAamvaData> record = std::make_unique<ReaderAamvaData>();
};

TEST_F(AamvaTest, LicenceIsDeliveredAsTwentyFourItems) {
  module->SetParameter("IssueDateFormat", "%Y");
  journal.Take();
  Lines expected = {"log 2 FullPageInputModule::ProcessFullPageData: ItemName: "};
  ExpectItem(expected, "AAMVA_PARSED_LICENCENUMBER", "T64235789");
  ExpectItem(expected, "AAMVA_PARSED_FULLNAME", "MICHAEL M MOTORIST");
  ExpectItem(expected, "AAMVA_PARSED_SURNAME", "MOTORIST");
  ExpectItem(expected, "AAMVA_PARSED_FORENAME", "MICHAEL");
  ExpectItem(expected, "AAMVA_PARSED_MIDDLENAME", "M");
  ExpectItem(expected, "AAMVA_PARSED_NAMESUFFIX", "JR");
  ExpectItem(expected, "AAMVA_PARSED_GIVENNAMES", "MICHAEL M");
  ExpectItem(expected, "AAMVA_PARSED_SEX", "MALE");
  ExpectItem(expected, "AAMVA_PARSED_ADDRESS_STREET", "2300 WEST BROAD STREET");
  ExpectItem(expected, "AAMVA_PARSED_ADDRESS_CITY", "RICHMOND");
  ExpectItem(expected, "AAMVA_PARSED_ADDRESS_STATE", "VA");
  ExpectItem(expected, "AAMVA_PARSED_ADDRESS_POSTALCODE", "232690000");
  ExpectItem(expected, "AAMVA_PARSED_ADDRESS_COUNTRY", "USA");
  ExpectItem(expected, "AAMVA_PARSED_SHORTSEX", "M");
  ExpectItem(expected, "AAMVA_PARSED_DATEOFBIRTH", "05-11-85");
  ExpectItem(expected, "AAMVA_PARSED_DATEOFBIRTH_FORMATTED", "05-11-1985");
  ExpectItem(expected, "AAMVA_PARSED_ISSUEDATE", "01-02-99");
  ExpectItem(expected, "AAMVA_PARSED_ISSUEDATE_FORMATTED", "1999");
  ExpectItem(expected, "AAMVA_PARSED_EXPIRYDATE", "03-04-30");
  ExpectItem(expected, "AAMVA_PARSED_EXPIRYDATE_FORMATTED", "03-04-2030");
  ExpectItem(expected, "AAMVA_PARSED_HEIGHT", "178 cm");
  ExpectItem(expected, "AAMVA_PARSED_WEIGHT", "180 lb");
  ExpectItem(expected, "AAMVA_PARSED_HAIR_COLOR", "Red_Auburn");
  ExpectItem(expected, "AAMVA_PARSED_EYE_COLOR", "Dichromatic");
  for (const ReaderDataType type :
       {ReaderDataType::AamvaSwipeRecord, ReaderDataType::AamvaBarcodeRecord}) {
    host.otherAnswer = 1;
    reader.SendRecord(type, *record);
    EXPECT_EQ(journal.Take(), expected);
  }
}

TEST_F(AamvaTest, LongTextsAreLoggedAndDeliveredWhole) {
  // Around the stack buffer of a log line, and the longest text of a field.
  for (const std::size_t length : {400U, 440U, 441U, 442U, 443U, 444U, 445U, 446U, 450U, 2999U}) {
    const std::string name(length, 'x');
    std::strcpy(record->surname, name.c_str());
    reader.SendRecord(ReaderDataType::AamvaBarcodeRecord, *record);
    const Lines lines = journal.Take();
    EXPECT_EQ(lines[5],
              "log 2 FullPageInputModule::ProcessStringDataItem: ProcessStringDataItem - aName "
              "AAMVA_PARSED_SURNAME  aValue " +
                  name);
    EXPECT_EQ(lines[6].rfind("SendData AAMVA_PARSED_SURNAME 4 " + std::to_string(length), 0), 0U);
  }
}

TEST_F(AamvaTest, AbsentDateIsEmptyButStillFormatted) {
  for (const ReaderDate date : {ReaderDate{-1, 11, 85}, {5, -1, 85}, {5, 11, -1}}) {
    record->issueDate = date;
    EXPECT_EQ(ValueOf("AAMVA_PARSED_ISSUEDATE"), "");
    EXPECT_EQ(ValueOf("AAMVA_PARSED_ISSUEDATE_FORMATTED").size(), 10U);
  }
  record->issueDate = {-1, -1, 85};
  EXPECT_EQ(ValueOf("AAMVA_PARSED_ISSUEDATE_FORMATTED"), "01-01-1985");
}

TEST_F(AamvaTest, UnitAndColourCodesAreDeliveredAsWords) {
  struct {
    std::int32_t value;
    std::int32_t unit;
    const char* expected;
  } const cases[] = {
      {178, 0, "178 Unknown"}, {178, 1, "178 in"},      {178, 2, "178 cm"}, {82, 3, "82 lb"},
      {82, 4, "82 kg"},        {178, 5, "178 Unknown"}, {0, 2, ""},         {-3, -1, "-3 Unknown"},
  };
  for (const auto& row : cases) {
    record->height = record->weight = row.value;
    record->heightUnit = record->weightUnit = row.unit;
    EXPECT_EQ(ValueOf("AAMVA_PARSED_HEIGHT"), row.expected);
    EXPECT_EQ(ValueOf("AAMVA_PARSED_WEIGHT"), row.expected);
  }
  const char* const hair[] = {"Unknown", "Unknown",    "Bald",  "Black", "Blond",  "Brown",
                              "Grey",    "Red_Auburn", "Sandy", "White", "Unknown"};
  record->hairColor = -1;
  for (const char* const expected : hair) {
    EXPECT_EQ(ValueOf("AAMVA_PARSED_HAIR_COLOR"), expected);
    ++record->hairColor;
  }
  const char* const eyes[] = {"Unknown", "Unknown", "Black",  "Blue", "Brown",       "Grey",
                              "Green",   "Hazel",   "Maroon", "Pink", "Dichromatic", "Unknown"};
  record->eyeColor = -1;
  for (const char* const expected : eyes) {
    EXPECT_EQ(ValueOf("AAMVA_PARSED_EYE_COLOR"), expected);
    ++record->eyeColor;
  }
  record->shortSex = '\0';
  EXPECT_EQ(ValueOf("AAMVA_PARSED_SHORTSEX"), "");
}

}  // namespace
}  // namespace conduit
