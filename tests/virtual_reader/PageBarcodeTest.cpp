#include <gmock/gmock.h>

#include <cstring>

#include "tests/virtual_reader/ReaderSession.h"
#include <conduit/ReaderAamvaData.h>
#include <conduit/ReaderBarcodeData.h>
#include <conduit/ReaderItem.h>

namespace conduit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

/// The barcodes and AAMVA records of a document: "BARCODE_QRCODE 0/2 0 text",
/// "AAMVA X0000317".
class PageBarcodes : public testing::Test {
 protected:
  /// Plays one document with these fields; PAGES/ stands for the test images.
  Lines Deliver(std::string fields) {
    for (std::size_t at = 0; (at = fields.find("PAGES", at)) != std::string::npos;) {
      fields.replace(at, 5, PAGES_FOLDER);
    }
    session.Write("session.json", R"({"steps": [{"document": {)" + fields + "}}]}");
    Lines lines;
    session.onData = [&](ReaderDataType type, std::int32_t, const void* data) {
      if (type == ReaderDataType::AamvaBarcodeRecord) {
        ReaderAamvaData record;
        std::memcpy(&record, data, sizeof record);
        lines.push_back(std::string("AAMVA ") + record.licenceNumber);
      }
      if (const ReaderItem* const row = FindReaderItem(type); row != nullptr) {
        if (row->kind == ReaderItemKind::Barcode) {
          ReaderBarcodeData barcode;
          std::memcpy(&barcode, data, sizeof barcode);
          const std::string text(static_cast<const char*>(barcode.data),
                                 static_cast<std::size_t>(barcode.length));
          lines.push_back(std::string(row->name) + " " + std::to_string(barcode.index) + "/" +
                          std::to_string(barcode.count) + " " + std::to_string(barcode.format) +
                          " " + text);
        }
      }
    };
    HaldenReader_EnableLogging(true, 1, -1, session.NameOf("log").c_str());
    const Lines calls = session.PlayUntil();
    EXPECT_EQ(calls.back(), "DEVICE_DISCONNECTED Terminated");
    HaldenReader_EnableLogging(false, 0, 0, nullptr);
    HaldenReader_Shutdown();
    return lines;
  }

  Lines DeliverPage(const std::string& page) {
    return Deliver(R"("images": {"IMAGEVIS": "PAGES/)" + page + "\"}");
  }

  std::string Log() const { return session.Read("log"); }

 private:
  ReaderSession session;
};

const std::string Binary = std::string("\0\xFF\x80", 3) + "end";

TEST_F(PageBarcodes, AreFoundInEverySymbologyAndOrientation) {
  const std::pair<std::string, std::string> cases[] = {
      {"code39", "BARCODE_1D_3_OF_9 0/1 0 PART-39 $/+%"},
      {"code128", "BARCODE_1D_128 0/1 0 Sample-128"},
      {"itf", "BARCODE_1D_INTERLEAVED_2_OF_5 0/1 0 00123456789050"},
      {"pdf417", "BARCODE_PDF417 0/1 0 PDF417" + std::string("\0\r\n\xFF\x80", 5) + "end"},
      {"aztec", "BARCODE_AZTECCODE 0/1 0 Aztec" + Binary},
      {"qr", "BARCODE_QRCODE 0/1 0 QR" + Binary},
      {"datamatrix", "BARCODE_DATAMATRIX 0/1 0 Matrix" + Binary},
  };
  for (const auto& [name, delivered] : cases) {
    for (const char* turn : {"-0", "-90", "-180"}) {
      EXPECT_THAT(DeliverPage(name + turn + ".png"), ElementsAre(delivered)) << name << turn;
    }
  }
}

TEST_F(PageBarcodes, ComeFromTopToBottomAndLeftToRight) {
  EXPECT_THAT(DeliverPage("rows.png"),
              ElementsAre("BARCODE_QRCODE 0/4 0 QR" + Binary, "BARCODE_1D_128 1/4 0 Sample-128",
                          "BARCODE_DATAMATRIX 2/4 0 Matrix" + Binary,
                          "BARCODE_AZTECCODE 3/4 0 Aztec" + Binary));
}

TEST_F(PageBarcodes, AreFoundOnAJpegAndOnATransparentPage) {
  for (const char* page : {"qr.jpg", "transparent.png"}) {
    EXPECT_THAT(DeliverPage(page), ElementsAre("BARCODE_QRCODE 0/1 0 QR" + Binary)) << page;
  }
}

TEST_F(PageBarcodes, HoldNothingThatTheSymbolDoesNot) {
  EXPECT_THAT(DeliverPage("aztec-full.png"),
              ElementsAre("BARCODE_AZTECCODE 0/1 0 " + std::string(996, '\0')));
  // It announces more bytes than it has.
  EXPECT_THAT(DeliverPage("broken-aztec.png"), IsEmpty());
}

/// The decoder throws for a QR Code whose characters go on beyond its data.
TEST_F(PageBarcodes, AreFoundBesideOneThatBreaksTheRules) {
  EXPECT_THAT(DeliverPage("broken-qr.png"),
              ElementsAre("BARCODE_QRCODE 0/4 0 A", "BARCODE_DATAMATRIX 1/4 0 ABCDE",
                          "BARCODE_1D_128 2/4 0 ABCD", "BARCODE_PDF417 3/4 0 BBBBBBBBBBBBBBBB"));
  EXPECT_THAT(Log(), HasSubstr("broken-qr.png: a BARCODE_QRCODE at "));
}

TEST_F(PageBarcodes, AreCountedOnceForAllImagesThatShowThem) {
  EXPECT_THAT(
      Deliver(R"("images": {"IMAGEUV": "PAGES/rows.png", "IMAGEIR": "PAGES/itf-0.png",
                                    "IMAGEVIS": "PAGES/qr-90.png"})"),
      ElementsAre("BARCODE_QRCODE 0/5 0 QR" + Binary,
                  "BARCODE_1D_INTERLEAVED_2_OF_5 1/5 0 00123456789050",
                  "BARCODE_1D_128 2/5 0 Sample-128", "BARCODE_DATAMATRIX 3/5 0 Matrix" + Binary,
                  "BARCODE_AZTECCODE 4/5 0 Aztec" + Binary));
}

TEST_F(PageBarcodes, AreNotLookedForWhereTheDocumentListsThemOrShowsNoPage) {
  for (const char* fields : {R"("images": {"IMAGEVIS": "PAGES/qr-0.png"}, "barcodes": [])",
                             R"("barcodes": [], "images": {"IMAGEVIS": "PAGES/qr-0.png"})",
                             R"("images": {"IMAGEPHOTO": "PAGES/qr-0.png"})"}) {
    EXPECT_THAT(Deliver(fields), IsEmpty()) << fields;
  }
}

TEST_F(PageBarcodes, GiveTheRecordOfADrivingLicence) {
  std::ifstream file(SAMPLES_FOLDER "/licence.txt", std::ios::binary);
  const std::string barcode =
      "BARCODE_PDF417 0/1 0 " + std::string(std::istreambuf_iterator<char>(file), {});
  EXPECT_THAT(DeliverPage("licence.png"), ElementsAre(barcode, "AAMVA X0000317"));
  EXPECT_THAT(DeliverPage("licence-without-birth.png"),
              ElementsAre(testing::StartsWith("BARCODE_PDF417 0/1 0 @"), "AAMVA X0000317"));
  EXPECT_THAT(Log(), HasSubstr("licence-without-birth.png: DBB is \"99999999\", not a date"));
  // A record of the document's own takes its place.
  EXPECT_THAT(Deliver(R"("images": {"IMAGEVIS": "PAGES/licence.png"},
                         "aamva": "@\n\u001e\rANSI 636000090001DL00310012DLDAQ7\nDBC9\r")"),
              ElementsAre(barcode, "AAMVA 7"));
}

TEST_F(PageBarcodes, ThatCannotBeDecodedAreOnlyLogged) {
  EXPECT_THAT(DeliverPage("damaged.png"), ElementsAre("BARCODE_QRCODE 0/1 0 QR" + Binary));
  EXPECT_THAT(Log(),
              HasSubstr("damaged.png: a BARCODE_1D_128 at 20, 0 cannot be decoded: its check "
                        "characters do not match"));
  EXPECT_THAT(DeliverPage("none.png"), IsEmpty());
  EXPECT_THAT(Log(), HasSubstr("none.png: no barcode found on the page"));
  EXPECT_THAT(Deliver(R"("images": {"IMAGEVIS": "session.json"})"), IsEmpty());
  EXPECT_THAT(Log(), HasSubstr("session.json: not searched, as it is no image of a known"));
}

}  // namespace
}  // namespace conduit
