#include <gmock/gmock.h>

#include <stdexcept>

#include "virtual_reader/records/AamvaReading.h"

namespace conduit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A barcode of the edition of 2016 or of 2000, with a correct header.
std::string Barcode(const std::string& elements, bool early = false) {
  const std::string subfile = "DL" + elements + "\r";
  std::string header = std::string("@\n\x1e\r") + (early ? "ANSI 6360000101" : "ANSI 636000090001");
  const std::size_t offset = header.size() + 10;
  const auto digits = [](std::size_t number) {
    const std::string text = std::to_string(number);
    return std::string(4 - text.size(), '0') + text;
  };
  return header + "DL" + digits(offset) + digits(subfile.size()) + subfile;
}

std::string Text(ReaderDate date) {
  return std::to_string(date.day) + "." + std::to_string(date.month) + "." +
         std::to_string(date.year);
}

/// By value: a reference into a packed record may be misaligned.
std::vector<std::int32_t> Figures(const ReaderAamvaData& r) {
  return {r.height, r.heightUnit, r.weight, r.weightUnit, r.eyeColor, r.hairColor};
}

std::int32_t Code(auto value) { return static_cast<std::int32_t>(value); }

TEST(AamvaReading, ReadsALicenceOfTheUnitedStates) {
  const AamvaReading reading = ReadAamva(
      Barcode("DAQT64235789\nDCSSAMPLE\nDDEN\nDACMICHAEL\nDADJOHN\nDCUJR\nDCGUSA\nDBD08312013\n"
              "DBB06061986\nDBA12312024\nDBC1\nDAU068 in\nDAYBRO\nDAZBLK\nDAW175\n"
              "DAG2300 WEST BROAD STREET\nDAIRICHMOND\nDAJVA\nDAK232690000  "));
  const ReaderAamvaData& r = reading.record;
  EXPECT_THAT(reading.warnings, IsEmpty());
  EXPECT_STREQ(r.licenceNumber, "T64235789");
  EXPECT_STREQ(r.surname, "SAMPLE");
  EXPECT_STREQ(r.forename, "MICHAEL");
  EXPECT_STREQ(r.middleName, "JOHN");
  EXPECT_STREQ(r.nameSuffix, "JR");
  EXPECT_STREQ(r.givenNames, "MICHAEL JOHN");
  EXPECT_STREQ(r.fullName, "MICHAEL JOHN SAMPLE JR");
  EXPECT_STREQ(r.sex, "MALE");
  EXPECT_EQ(r.shortSex, 'M');
  EXPECT_EQ(Text(r.dateOfBirth), "6.6.86");
  EXPECT_EQ(Text(r.issueDate), "31.8.13");
  EXPECT_EQ(Text(r.expiryDate), "31.12.24");
  EXPECT_STREQ(r.addressStreet, "2300 WEST BROAD STREET");
  EXPECT_STREQ(r.addressCity, "RICHMOND");
  EXPECT_STREQ(r.addressState, "VA");
  EXPECT_STREQ(r.addressPostalCode, "232690000");
  EXPECT_STREQ(r.addressCountry, "USA");
  EXPECT_THAT(Figures(r), ElementsAre(68, Code(ReaderMeasurementUnit::Inch), 175,
                                      Code(ReaderMeasurementUnit::Pound),
                                      Code(ReaderEyeColor::Brown), Code(ReaderHairColor::Black)));
}

TEST(AamvaReading, ReadsALicenceOfCanada) {
  const ReaderAamvaData r =
      ReadAamva(Barcode("DAQ1\nDCSROY\nDCTANNE,MARIE\nDCGCAN\nDBB19860102\nDBANONE\nDBC2\n"
                        "DAU175 cm\nDAX084\nDAYUNK\nDAZunavl"))
          .record;
  EXPECT_EQ(Text(r.dateOfBirth), "2.1.86");
  EXPECT_EQ(Text(r.expiryDate), "-1.-1.-1");
  EXPECT_STREQ(r.forename, "ANNE");
  EXPECT_STREQ(r.middleName, "MARIE");
  EXPECT_STREQ(r.givenNames, "ANNE MARIE");
  EXPECT_STREQ(r.sex, "FEMALE");
  EXPECT_THAT(Figures(r), ElementsAre(175, Code(ReaderMeasurementUnit::Centimetre), 84,
                                      Code(ReaderMeasurementUnit::Kilogram), 0, 0));
}

TEST(AamvaReading, ReadsTheEditionOf2000) {
  const ReaderAamvaData r =
      ReadAamva(Barcode("DAAPUBLIC,JOHN,QUINCY\nDAQ9\nDBB19420207\nDBCM\nDAU509", true)).record;
  EXPECT_STREQ(r.fullName, "PUBLIC,JOHN,QUINCY");
  EXPECT_STREQ(r.surname, "PUBLIC");
  EXPECT_STREQ(r.forename, "JOHN");
  EXPECT_STREQ(r.middleName, "QUINCY");
  EXPECT_EQ(Text(r.dateOfBirth), "7.2.42");
  EXPECT_THAT(Figures(r), ElementsAre(69, Code(ReaderMeasurementUnit::Inch), 0, 0, 0, 0));
  EXPECT_EQ(r.shortSex, 'M');
}

TEST(AamvaReading, FindsElementsByNameWhenTheHeaderLeadsNowhere) {
  const char* const headers[] = {
      "@\n\x1e\rANSI 636000090001DL00990278",            // beyond the text
      "@\n\x1e\rANSI 636000090001DL00310004",            // cuts the subfile short
      "@\n\x1e\rANSI 636000090003DL00310278ZV03090008",  // too few designators
      "@\nANSI 636000090000",                            // none
  };
  for (const char* header : headers) {
    const AamvaReading reading = ReadAamva(header + std::string("DLDAQ7\nDCSROE\rZVZVA01\r"));
    EXPECT_STREQ(reading.record.licenceNumber, "7") << header;
    EXPECT_STREQ(reading.record.surname, "ROE") << header;
    EXPECT_THAT(reading.warnings, ElementsAre(HasSubstr("found by name"))) << header;
  }
}

TEST(AamvaReading, SendsAnUnknownColourAsUnknownAndSaysSo) {
  const AamvaReading reading = ReadAamva(Barcode("DAQ1\nDAYXYZ"));
  EXPECT_EQ(Figures(reading.record)[4], Code(ReaderEyeColor::Unknown));
  EXPECT_THAT(reading.warnings, ElementsAre(HasSubstr("DAY is \"XYZ\"")));
}

TEST(AamvaReading, PartsNamesAsOlderCardsDo) {
  for (const char* name : {"DOE@JANE@ANN", "DOE$JANE$ANN", "DOE,JANE,ANN", "DOE@JANE,ANN"}) {
    const ReaderAamvaData r = ReadAamva(Barcode(std::string("DAQ1\nDAA") + name, true)).record;
    EXPECT_STREQ(r.surname, "DOE") << name;
    EXPECT_STREQ(r.forename, "JANE") << name;
    EXPECT_STREQ(r.middleName, "ANN") << name;
    EXPECT_STREQ(r.givenNames, "JANE ANN") << name;
  }
  EXPECT_STREQ(ReadAamva(Barcode("DAQ1\nDCTANNE@MARIE")).record.middleName, "MARIE");
}

TEST(AamvaReading, UnderstandsHeightsAsPeopleWriteThem) {
  const std::pair<const char*, std::int32_t> cases[] = {
      {"5'-10\"", 70}, {"5' 10\"", 70}, {"5'10", 70},  {"5-10", 70}, {"5 FT 10 IN", 70},
      {"6'", 72},      {"6'-00\"", 72}, {"070\"", 70}, {"510", 70},  {"070 IN", 70},
  };
  for (const auto& [height, inches] : cases) {
    const AamvaReading reading = ReadAamva(Barcode(std::string("DAQ1\nDAU") + height));
    EXPECT_EQ(Figures(reading.record)[0], inches) << height;
    EXPECT_EQ(Figures(reading.record)[1], Code(ReaderMeasurementUnit::Inch)) << height;
    EXPECT_THAT(reading.warnings, IsEmpty()) << height;
  }
}

TEST(AamvaReading, LeavesOutTheElementThatItCannotReadAndNamesIt) {
  const std::pair<const char*, const char*> cases[] = {
      {"DBB13322020", "DBB is \"13322020\", not a date in the order MMDDYYYY"},
      {"DBB0606", "DBB is \"0606\""},
      {"DBC7", "DBC is \"7\""},
      {"DAUtall", "DAU is \"tall\""},
      {"DAU5'-14\"", "DAU is \"5'-14\"\""},
      {"DAU5'10 cm", "DAU is"},
      {"DAU999999999999 in", "DAU is"},
      {"DAWheavy", "DAW is \"heavy\""},
      {"DCUXVIII", "DCU (nameSuffix) has 5 bytes, the record holds 3"},
  };
  for (const auto& [element, reason] : cases) {
    const AamvaReading reading =
        ReadAamva(Barcode(std::string("DAQ1\n") + element + "\nDCSROE\nDBA12312024"));
    EXPECT_THAT(reading.warnings, ElementsAre(HasSubstr(reason))) << element;
    EXPECT_STREQ(reading.record.surname, "ROE") << element;
    EXPECT_EQ(Text(reading.record.dateOfBirth), "-1.-1.-1") << element;
    EXPECT_EQ(Text(reading.record.expiryDate), "31.12.24") << element;
    EXPECT_THAT(Figures(reading.record), ElementsAre(0, 0, 0, 0, 0, 0)) << element;
    EXPECT_STREQ(reading.record.nameSuffix, "") << element;
  }
}

TEST(AamvaReading, RefusesWhatIsNoLicence) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "does not begin with \"@\""},
      {"@ DAQ1", "\"ANSI \" does not follow"},
      {"@\n\x1e\rANSI 63600", "are not 8 digits"},
      {"@\n\x1e\rANSI 636000090001", "holds no element"},
  };
  for (const auto& [text, reason] : cases) {
    try {
      ReadAamva(text);
      ADD_FAILURE() << "accepted: " << reason;
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), HasSubstr(reason));
    }
  }
}

}  // namespace
}  // namespace conduit
