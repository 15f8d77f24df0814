#include <gmock/gmock.h>

#include <cstring>

#include "tests/virtual_reader/ReaderSession.h"
#include <conduit/ReaderAamvaData.h>
#include <conduit/ReaderBarcodeData.h>
#include <conduit/ReaderCodelineData.h>
#include <conduit/ReaderSwipeData.h>

namespace conduit {
namespace {

using testing::ElementsAre;

const std::string CodelineBytes = std::to_string(sizeof(ReaderCodelineData)) + " bytes";

/// A record out of the data callback, which may give it at any address.
template <typename Record>
Record Copy(const void* data) {
  Record record;
  std::memcpy(&record, data, sizeof record);
  return record;
}

TEST(Playing, SendsADocumentInTheOrderOfItsFields) {
  ReaderSession session(R"({"steps": [{"document": {
      "images": {"IMAGEUV": "uv", "IMAGEVIS": "vis"},
      "error": "Lamp failure",
      "codeline": {"lines": ["AB"], "fields": {"docType": ""}},
      "chip": {"photo": "vis", "dg1": {"lines": [], "fields": {"docType": "", "codeline": "X"}}}}},
    {"event": "READER_ERROR_RESOLVED"}]})");
  session.Write("uv", "violet");
  session.Write("vis", std::string("a\0b", 3));
  EXPECT_THAT(
      session.PlayUntil(),
      ElementsAre("DEVICE_CONNECTED Enabled", "DOC_ON_WINDOW Enabled",
                  "START_OF_DOCUMENT_DATA Reading", "item 11 violet",
                  "item 6 " + std::string("a\0b", 3), "error: Lamp failure Error", "item 0 AB",
                  "item 1 " + CodelineBytes, "RF_CHIP_OPENED_SUCCESSFULLY Error",
                  "RF_APPLICATION_OPENED_SUCCESSFULLY Error", "item 20 " + std::string("a\0b", 3),
                  "item 18 X", "item 19 " + CodelineBytes, "RF_CHIP_REMOVAL_SUCCESS Error",
                  "END_OF_DOCUMENT_DATA Error", "DOC_REMOVED Error",
                  "READER_ERROR_RESOLVED Enabled", "DEVICE_DISCONNECTED Terminated"));
}

/// The rest of its document is delivered all the same.
TEST(Playing, RaisesAnErrorInPlaceOfADamagedImage) {
  ReaderSession session(R"({"steps": [{"document": {
      "images": {"IMAGEVIS": "cut", "IMAGEUV": "uv"}, "chip": {"photo": "cut"}}}]})");
  session.Write("cut", "\x89PNG\r\n\x1A\n");
  session.Write("uv", "violet");
  EXPECT_THAT(
      session.PlayUntil(),
      ElementsAre(
          "DEVICE_CONNECTED Enabled", "DOC_ON_WINDOW Enabled", "START_OF_DOCUMENT_DATA Reading",
          "error: step 1, document.images.IMAGEVIS: \"cut\": the file ends early Error",
          "READER_ERROR_RESOLVED Reading", "item 11 violet", "RF_CHIP_OPENED_SUCCESSFULLY Reading",
          "RF_APPLICATION_OPENED_SUCCESSFULLY Reading",
          "error: step 1, document.chip.photo: \"cut\": the file ends early Error",
          "READER_ERROR_RESOLVED Reading", "RF_CHIP_REMOVAL_SUCCESS Reading",
          "END_OF_DOCUMENT_DATA Enabled", "DOC_REMOVED Enabled", "DEVICE_DISCONNECTED Terminated"));
}

TEST(Playing, RaisesAnErrorInPlaceOfAnImageThatIsGone) {
  // More steps than are made ahead by the time of the first event.
  std::string pauses;
  for (int i = 0; i < 1000; ++i) {
    pauses += R"({"pause": 0}, )";
  }
  ReaderSession session(R"({"steps": [)" + pauses + R"({"document": {
      "images": {"IMAGEUV": "uv", "IMAGEVIS": "vis", "IMAGEIR": "ir"}}}]})");
  for (const char* name : {"uv", "vis", "ir"}) {
    session.Write(name, name);
  }
  session.onEvent = [&session](ReaderEventCode /*code*/) {
    std::filesystem::remove(session.PathOf("vis"));
  };
  EXPECT_THAT(
      session.PlayUntil(),
      ElementsAre("DEVICE_CONNECTED Enabled", "DOC_ON_WINDOW Enabled",
                  "START_OF_DOCUMENT_DATA Reading", "item 11 uv",
                  "error: step 1001, document.images.IMAGEVIS: \"vis\": there is no such "
                  "file Error",
                  "READER_ERROR_RESOLVED Reading", "item 4 ir", "END_OF_DOCUMENT_DATA Enabled",
                  "DOC_REMOVED Enabled", "DEVICE_DISCONNECTED Terminated"));
}

TEST(Playing, IsInTheStateThatItAnnounces) {
  ReaderSession session(R"({"steps": [
      {"state": "Asleep"}, {"document": {}}, {"swipe": ["1"]}, {"state": "Error"},
      {"event": "DEVICE_DISCONNECTED"}, {"event": "READER_ERROR_RESOLVED"},
      {"event": "DEVICE_CONNECTED"}, {"error": "Jam"}, {"state": "Fatal Error"}]})");
  EXPECT_EQ(StateName(), "Not Initialised");
  EXPECT_THAT(session.PlayUntil(),
              ElementsAre("DEVICE_CONNECTED Enabled", "AUTOMATIC_STATE_CHANGE Asleep",
                          "DOC_ON_WINDOW Asleep", "START_OF_DOCUMENT_DATA Reading",
                          "END_OF_DOCUMENT_DATA Enabled", "DOC_REMOVED Enabled",
                          "START_OF_SWIPE_DATA Reading",
                          "item 74 " + std::to_string(sizeof(ReaderSwipeData)) + " bytes",
                          "END_OF_SWIPE_DATA Enabled", "AUTOMATIC_STATE_CHANGE Error",
                          "DEVICE_DISCONNECTED Error", "READER_ERROR_RESOLVED Disabled",
                          "DEVICE_CONNECTED Enabled", "error: Jam Error",
                          "AUTOMATIC_STATE_CHANGE Fatal Error", "DEVICE_DISCONNECTED Terminated"));
  EXPECT_EQ(StateName(), "Terminated");
  HaldenReader_Shutdown();
  EXPECT_EQ(StateName(), "Not Initialised");
}

TEST(Playing, NumbersTheBarcodesOfOneRead) {
  ReaderSession session(R"({"steps": [{"document": {"barcodes": [
      {"symbology": "BARCODE_QRCODE", "text": "a\u0000b"},
      {"symbology": "BARCODE_PDF417", "file": "bytes", "format": 12}]}}]})");
  session.Write("bytes", "\xFF");
  std::vector<std::string> barcodes;
  session.onData = [&](ReaderDataType type, std::int32_t length, const void* data) {
    const auto barcode = Copy<ReaderBarcodeData>(data);
    EXPECT_EQ(length, static_cast<std::int32_t>(sizeof barcode));
    const std::string bytes(static_cast<const char*>(barcode.data),
                            static_cast<std::size_t>(barcode.length));
    barcodes.push_back(std::to_string(static_cast<std::int32_t>(type) & 0xFF) + " " +
                       std::to_string(barcode.index) + "/" + std::to_string(barcode.count) + " " +
                       std::to_string(barcode.format) + " " + bytes);
  };
  session.PlayUntil();
  EXPECT_THAT(barcodes, ElementsAre("12 0/2 0 " + std::string("a\0b", 3), "6 1/2 12 \xFF"));
}

TEST(Playing, FillsRecordsFromTheSession) {
  ReaderSession session(R"({"steps": [
      {"document": {
        "aamva": "@\n\u001e\rANSI 636000090001DL00310012DLDAQ7\nDBC9\r",
        "codeline": {
          "lines": ["P<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<<<<<<<<<",
                    "L898902C36UTO7408122F1204159ZE184226B<<<<<10"],
          "fields": {"surname": "OTHER", "shortSex": "", "line2": "L8*",
                     "dateOfBirth": {"day": 99, "month": -1, "year": 0}}}}},
      {"swipe": ["%B1^X?", "", ";1=2?"]}]})");
  int records = 0;
  session.onData = [&](ReaderDataType type, std::int32_t, const void* data) {
    if (type == ReaderDataType::AamvaBarcodeRecord) {
      const auto record = Copy<ReaderAamvaData>(data);
      EXPECT_STREQ(record.licenceNumber, "7");
      EXPECT_STREQ(record.sex, "UNKNOWN");
    } else if (type == ReaderDataType::CodelineRecord) {
      const auto record = Copy<ReaderCodelineData>(data);
      EXPECT_STREQ(record.surname, "OTHER");
      EXPECT_STREQ(record.forename, "ANNA");
      EXPECT_STREQ(record.line2, "L8*");
      EXPECT_EQ(record.shortSex, '\0');
      const ReaderDate birth = record.dateOfBirth;
      EXPECT_EQ(+birth.day, 99);
      EXPECT_EQ(+birth.month, -1);
    } else if (type == ReaderDataType::SwipeRecord) {
      const auto record = Copy<ReaderSwipeData>(data);
      EXPECT_STREQ(record.track1, "%B1^X?");
      EXPECT_STREQ(record.track2, "");
      EXPECT_STREQ(record.track3, ";1=2?");
    } else {
      return;
    }
    ++records;
  };
  session.PlayUntil();
  EXPECT_EQ(records, 3);
}

TEST(Playing, StartsAgainAfterTheEnd) {
  ReaderSession session(R"({"steps": []})");
  for (int run = 0; run < 2; ++run) {
    EXPECT_EQ(session.PlayUntil().size(), 2U);
    // The callback that was recorded may still be under way, and is waited for.
    HaldenReader_Shutdown();
  }
}

TEST(Playing, GoesOnAfterACallbackThatThrows) {
  ReaderSession session(R"({"steps": [{"document": {"images": {"IMAGEIR": "ir"}}}]})");
  session.Write("ir", "x");
  session.onData = [](ReaderDataType, std::int32_t, const void*) { throw 1; };
  EXPECT_EQ(session.PlayUntil().size(), 6U);
}

TEST(Playing, PlaysTheSampleSession) {
  ReaderSession session;
  ReaderSession::Name(SAMPLES_FOLDER "/session.json");
  EXPECT_EQ(session.PlayUntil().back(), "DEVICE_DISCONNECTED Terminated");
}

}  // namespace
}  // namespace conduit
