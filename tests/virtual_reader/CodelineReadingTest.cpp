#include <gmock/gmock.h>

#include <stdexcept>

#include "virtual_reader/records/CodelineReading.h"

namespace conduit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct Document {
  std::vector<std::string> lines;
  std::vector<std::string> texts;  ///< docId, docType, surname, forename, secondName, forenames,
                                   ///< state, nationality, number, sex, optional data 1 and 2
  std::string birth;
  std::string expiry;
  char shortSex;
};

std::string Text(ReaderDate date) {
  return std::to_string(date.day) + "." + std::to_string(date.month) + "." +
         std::to_string(date.year);
}

// The specimens that Doc 9303 prints, parts 4 to 7.
const Document Specimens[] = {
    {{"I<UTOD231458907<<<<<<<<<<<<<<<", "7408122F1204159UTO<<<<<<<<<<<6",
      "ERIKSSON<<ANNA<MARIA<<<<<<<<<<"},
     {"I", "IDENTITY CARD", "ERIKSSON", "ANNA", "MARIA", "ANNA MARIA", "UTO", "UTO", "D23145890",
      "FEMALE", "", ""},
     "12.8.74",
     "15.4.12",
     'F'},
    // A number of more than nine characters, as 9303-5 shows it.
    {{"I<UTOD23145890<7349<<<<<<<<<<<", "3407127M9507122UTO<<<<<<<<<<<2",
      "STEVENSON<<PETER<JOHN<<<<<<<<<"},
     {"I", "IDENTITY CARD", "STEVENSON", "PETER", "JOHN", "PETER JOHN", "UTO", "UTO",
      "D23145890734", "MALE", "", ""},
     "12.7.34",
     "12.7.95",
     'M'},
    {{"I<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<", "D231458907UTO7408122F1204159<<<<<<<6"},
     {"I", "IDENTITY CARD", "ERIKSSON", "ANNA", "MARIA", "ANNA MARIA", "UTO", "UTO", "D23145890",
      "FEMALE", "", ""},
     "12.8.74",
     "15.4.12",
     'F'},
    {{"P<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<<<<<<<<<",
      "L898902C36UTO7408122F1204159ZE184226B<<<<<10"},
     {"P", "PASSPORT", "ERIKSSON", "ANNA", "MARIA", "ANNA MARIA", "UTO", "UTO", "L898902C3",
      "FEMALE", "ZE184226B", ""},
     "12.8.74",
     "15.4.12",
     'F'},
    {{"V<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<<<<<<<<<",
      "L8988901C4XXX4009078F96121096ZE184226B<<<<<<"},
     {"V", "VISA", "ERIKSSON", "ANNA", "MARIA", "ANNA MARIA", "UTO", "XXX", "L8988901C", "FEMALE",
      "6ZE184226B", ""},
     "7.9.40",
     "10.12.96",
     'F'},
    {{"V<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<", "L8988901C4XXX4009078F9612109<<<<<<<<"},
     {"V", "VISA", "ERIKSSON", "ANNA", "MARIA", "ANNA MARIA", "UTO", "XXX", "L8988901C", "FEMALE",
      "", ""},
     "7.9.40",
     "10.12.96",
     'F'},
};

TEST(CodelineReading, SplitsTheSpecimensOfEveryFormat) {
  for (const Document& document : Specimens) {
    SCOPED_TRACE(document.lines[0] + " " + document.lines[1]);
    const CodelineReading reading = ReadCodeline(document.lines);
    const ReaderCodelineData& r = reading.record;
    const std::vector<std::string> texts = {
        r.docId,        r.docType,     r.surname,   r.forename, r.secondName,    r.forenames,
        r.issuingState, r.nationality, r.docNumber, r.sex,      r.optionalData1, r.optionalData2};
    EXPECT_EQ(texts, document.texts);
    EXPECT_EQ(Text(r.dateOfBirth), document.birth);
    EXPECT_EQ(Text(r.expiryDate), document.expiry);
    EXPECT_EQ(r.shortSex, document.shortSex);
    EXPECT_EQ(r.line2, document.lines[1]);
    EXPECT_THAT(reading.warnings, IsEmpty());
  }
}

TEST(CodelineReading, TakesTheKindOfDocumentFromItsCode) {
  const std::pair<const char*, const char*> kinds[] = {
      {"PM", "PASSPORT"},        {"ID", "IDENTITY CARD"},   {"AC", "IDENTITY CARD"},
      {"IR", "RESIDENCE CARD"},  {"AR", "RESIDENCE CARD"},  {"C1", "RESIDENCE CARD"},
      {"D<", "DRIVING LICENCE"}, {"X<", "UNKNOWN DOCUMENT"}};
  for (const auto& [code, docType] : kinds) {
    const std::string line1 = std::string(code).append("UTOD231458907<<<<<<<<<<<<<<<");
    EXPECT_STREQ(ReadCodeline({line1, Specimens[0].lines[1], Specimens[0].lines[2]}).record.docType,
                 docType)
        << code;
  }
}

TEST(CodelineReading, ReadsDamagedAndMissingPartsAsFarAsTheyGo) {
  const CodelineReading reading = ReadCodeline({"P<D<<VAN<DER<MUSTER<<<<<<<<<<<<<<<<<<<<<<<<<",
                                                "L89*902C3*D<<74<<<<<<**41*9<<<<<<<<<<<<<<<<0"});
  EXPECT_STREQ(reading.record.surname, "VAN DER MUSTER");
  EXPECT_STREQ(reading.record.forenames, "");
  EXPECT_STREQ(reading.record.issuingState, "D");
  EXPECT_STREQ(reading.record.docNumber, "L89*902C3");
  EXPECT_EQ(Text(reading.record.dateOfBirth), "0.0.74");
  EXPECT_EQ(Text(reading.record.expiryDate), "0.41.0");
  EXPECT_STREQ(reading.record.sex, "UNSPECIFIED");
  EXPECT_EQ(reading.record.shortSex, 'X');
}

TEST(CodelineReading, DoubtsWrongCheckDigitsWithoutRefusingThem) {
  const CodelineReading reading = ReadCodeline({"P<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<<<<<<<<<",
                                                "L898902C39UTO7408129F1204159ZE184226B<<<<<10"});
  EXPECT_THAT(reading.warnings,
              ElementsAre(HasSubstr("document number is '9', by the codeline it would be '6'"),
                          HasSubstr("date of birth is '9'"), HasSubstr("whole codeline is '0'")));
}

TEST(CodelineReading, RefusesLinesOfNoFormatByTheFormatThatWasMeant) {
  const std::string passport(44, '<');
  std::string visa(36, '<');
  visa[0] = 'V';
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{passport, passport.substr(1)}, "line 2 has 43 characters, a TD3 line has 44"},
      {{std::string(45, '<'), passport}, "line 1 has 45 characters, a TD3 line has 44"},
      {{visa, std::string(37, '<')}, "line 2 has 37 characters, an MRV-B line has 36"},
      {{std::string(30, '<'), std::string(30, '<'), ""}, "line 3 has 0 characters, a TD1 line"},
      {{passport}, "1 lines of 44 characters fit no codeline format"},
      {{"AB", "CDE"}, "2 lines of 2, 3 characters fit no codeline format"},
      {{passport, passport.substr(2) + "\xC3\x89"}, "line 2 has a character that is not printable"},
  };
  for (const auto& [lines, reason] : cases) {
    try {
      ReadCodeline(lines);
      ADD_FAILURE() << "accepted: " << reason;
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), HasSubstr(reason));
    }
  }
}

}  // namespace
}  // namespace conduit
