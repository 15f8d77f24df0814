#include <limits>
#include <memory>
#include <thread>

#include "tests/support/ModuleTest.h"
#include <conduit/ReaderAamvaData.h>
#include <conduit/ReaderBarcodeData.h>
#include <conduit/ReaderSwipeData.h>

namespace conduit {
namespace {

using testing::ElementsAre;

class CallbackTest : public ModuleTest {
 protected:
  static constexpr const char* ItemNameLine =
      "log 2 FullPageInputModule::ProcessFullPageData: ItemName: ";
};

TEST_F(CallbackTest, PlainItemsKeepTheReadersPointer) {
  struct {
    std::int32_t type;
    const char* name;
    const char* itemType;
  } const cases[] = {
      {0, "CODELINE", "4"},        {4, "IMAGEIR", "5"},      {6, "IMAGEVIS", "5"},
      {7, "IMAGEVISREAR", "5"},    {10, "IMAGEPHOTO", "5"},  {11, "IMAGEUV", "5"},
      {13, "IMAGECOAXVIS", "5"},   {14, "IMAGECOAXIR", "5"}, {15, "IMAGEBARCODE", "5"},
      {18, "SCDG1_CODELINE", "4"}, {20, "SCDG2_PHOTO", "5"},
  };
  char data[1000] = {};
  for (const auto& row : cases) {
    reader.SendData(static_cast<ReaderDataType>(row.type), 1000, data);
    EXPECT_THAT(journal.Take(), ElementsAre(std::string(ItemNameLine) + row.name,
                                            std::string("SendData ") + row.name + " " +
                                                row.itemType + " 1000 last"));
    EXPECT_EQ(host.lastData, data);
  }
  // The module passes the pointer on unread, even null.
  reader.SendData(ReaderDataType::ImageVis, 1000, nullptr);
  EXPECT_THAT(TakeHostCalls(), ElementsAre("SendData IMAGEVIS 5 1000 last"));
  reader.SendData(ReaderDataType::ChipDataGroup1, 1000, nullptr);
  EXPECT_THAT(TakeHostCalls(), ElementsAre("SendData SCDG1_CODELINE 4 0 '' last"));
  EXPECT_NE(host.lastData, nullptr) << "no text pointer is ever null";
}

TEST_F(CallbackTest, UnknownTypesAreLoggedAndDropped) {
  for (const std::int32_t type : {2, 3, 5, 8, 9, 12, 16, 17, 21, 73, 76, 81, -1, 0x10000000,
                                  0x10000007, std::numeric_limits<std::int32_t>::max()}) {
    reader.SendData(static_cast<ReaderDataType>(type), 4, nullptr);
    EXPECT_THAT(journal.Take(), ElementsAre(ItemNameLine)) << type;
  }
}

TEST_F(CallbackTest, RecordsAndBarcodesWithoutDataDeliverNothing) {
  for (const std::int32_t type : {1, 19, 74, 75, 80, 0x10000006}) {
    reader.SendData(static_cast<ReaderDataType>(type), 4, nullptr);
    EXPECT_THAT(journal.Take(), ElementsAre(ItemNameLine,
                                            "log 0 FullPageInputModule::ProcessFullPageData: No "
                                            "data came with an item of type " +
                                                std::to_string(type)));
  }
}

TEST_F(CallbackTest, BarcodesCarryIndexAndFormat) {
  struct {
    std::int32_t type;
    const char* name;
  } const names[] = {
      {0x10000001, "BARCODE_1D_INDUSTRIAL_2_OF_5"},
      {0x10000002, "BARCODE_1D_INTERLEAVED_2_OF_5"},
      {0x10000003, "BARCODE_1D_IATA_2_OF_5"},
      {0x10000004, "BARCODE_1D_3_OF_9"},
      {0x10000005, "BARCODE_1D_128"},
      {0x10000006, "BARCODE_PDF417"},
      {0x1000000A, "BARCODE_AZTECCODE"},
      {0x1000000C, "BARCODE_QRCODE"},
      {0x10000014, "BARCODE_DATAMATRIX"},
  };
  ReaderBarcodeData barcode{};
  barcode.data = "data";
  barcode.length = 4;
  barcode.count = 3;
  for (const auto& row : names) {
    reader.SendRecord(static_cast<ReaderDataType>(row.type), barcode);
    EXPECT_THAT(journal.Take(), ElementsAre(ItemNameLine, std::string("SendData ") + row.name +
                                                              " 4 4 'data' feature=0 more"));
    EXPECT_EQ(host.lastData, barcode.data);
  }
  for (barcode.index = 0; barcode.index < 3; ++barcode.index) {
    reader.SendRecord(ReaderDataType::BarcodeQr, barcode);
  }
  EXPECT_THAT(TakeHostCalls(), ElementsAre("SendData BARCODE_QRCODE 4 4 'data' feature=0 more",
                                           "SendData BARCODE_QRCODE 4 4 'data' feature=1 more",
                                           "SendData BARCODE_QRCODE 4 4 'data' feature=2 last"));

  // For the formats -1, 0, 1 ... 13.
  const std::string itemTypes[] = {"0", "4", "4", "0", "0", "5", "5", "1",
                                   "0", "5", "2", "3", "0", "5", "0"};
  barcode.data = nullptr;
  barcode.format = -1;
  for (const std::string& itemType : itemTypes) {
    reader.SendRecord(ReaderDataType::BarcodeQr, barcode);
    EXPECT_THAT(TakeHostCalls(),
                ElementsAre("SendData BARCODE_QRCODE " + itemType +
                            (itemType == "4" ? " 0 ''" : " 4") + " feature=3 more"));
    ++barcode.format;
  }
}

TEST_F(CallbackTest, UnalignedRecordsAreRead) {
  alignas(8) char room[sizeof(ReaderBarcodeData) + 1] = {};
  auto& barcode = *reinterpret_cast<ReaderBarcodeData*>(room + 1);
  barcode.index = std::numeric_limits<std::int32_t>::max();
  barcode.count = std::numeric_limits<std::int32_t>::min();
  barcode.format = 12;
  reader.SendRecord(ReaderDataType::BarcodeAztec, barcode);
  EXPECT_THAT(TakeHostCalls(),
              ElementsAre("SendData BARCODE_AZTECCODE 5 0 feature=2147483647 more"));
}

TEST_F(CallbackTest, SwipeTracksAreDeliveredUnlogged) {
  ReaderSwipeData swipe{};
  swipe.track1[0] = 'A';
  swipe.track3[0] = 'C';
  reader.SendRecord(ReaderDataType::SwipeRecord, swipe);
  Lines expected = {ItemNameLine};
  ExpectItem(expected, "INPUT_SOURCE", "MAG");
  expected.insert(expected.end(), {"SendData SWIPE_MSR_TRACK_1 4 1 'A' last",
                                   "SendData SWIPE_MSR_TRACK_2 4 0 '' last",
                                   "SendData SWIPE_MSR_TRACK_3 4 1 'C' last"});
  EXPECT_EQ(journal.Take(), expected);
}

TEST_F(CallbackTest, CallsOfAnEventKeepTheirOrder) {
  reader.state = static_cast<std::int32_t>(ReaderState::Reading);
  module->AddCondition("ReceiveEvent", "START_OF_DOCUMENT_DATA");
  module->AddAction("ReceiveEvent", "START_OF_DOCUMENT_DATA", "SetActiveScript", "scan");
  host.failingScript = "scan";
  journal.Take();
  reader.SendEvent(ReaderEventCode::StartOfDocumentData);
  EXPECT_THAT(
      journal.Take(),
      ElementsAre("ReportError ''",
                  "log 2 FullPageInputModule::ProcessFullPageEvent: Event: START_OF_DOCUMENT_DATA",
                  "SetActiveScript scan", "BeginData", "SendEvent START_OF_DOCUMENT_DATA",
                  "ReportState 'Reading'"));
}

TEST_F(CallbackTest, StateIsReadAfterTheActionsOfAnEvent) {
  module->AddCondition("ReceiveEvent", "DOC_ON_WINDOW");
  module->AddAction("ReceiveEvent", "DOC_ON_WINDOW", "SetActiveScript", "scan");
  host.onScript = [&] { reader.state = static_cast<std::int32_t>(ReaderState::Suspended); };
  reader.SendEvent(ReaderEventCode::DocOnWindow);
  EXPECT_EQ(journal.Take().back(), "ReportState 'Suspended'");
}

TEST_F(CallbackTest, EachEventSendsItsNameAndDataBracket) {
  for (std::int32_t code = 0; code < 27; ++code) {
    reader.SendEvent(static_cast<ReaderEventCode>(code));
    Lines expected = {"ReportError ''"};
    if (code == 2 || code == 21) {
      expected.emplace_back("BeginData");
    } else if (code == 3 || code == 22) {
      expected.emplace_back("EndData");
    } else if (code == 8) {
      expected.emplace_back("ReportError ''");
    }
    expected.push_back(std::string("SendEvent ") + ReaderEventNames[code]);
    expected.emplace_back("ReportState 'Enabled'");
    EXPECT_EQ(TakeHostCalls(), expected);
  }
}

TEST_F(CallbackTest, UnknownEventIsNotSentButFiresTheEmptyCondition) {
  module->AddCondition("ReceiveEvent", "");
  module->AddAction("ReceiveEvent", "", "SetActiveScript", "unknown");
  for (const std::int32_t code : {27, -1, std::numeric_limits<std::int32_t>::min()}) {
    journal.Take();
    reader.SendEvent(static_cast<ReaderEventCode>(code));
    EXPECT_THAT(
        journal.Take(),
        ElementsAre("ReportError ''", "log 2 FullPageInputModule::ProcessFullPageEvent: Event: ",
                    "SetActiveScript unknown", "ReportState 'Enabled'"));
  }
}

TEST_F(CallbackTest, ErrorsAreLoggedReportedAndFollowedByTheState) {
  const char* const states[] = {"",           "Not Initialised", "Enabled", "Disabled",
                                "Asleep",     "Reading",         "Error",   "Fatal Error",
                                "Terminated", "Suspended",       ""};
  reader.state = -1;
  for (const char* const state : states) {
    reader.SendError("Lamp failure");
    EXPECT_THAT(
        journal.Take(),
        ElementsAre("log 0 FullPageInputModule::ProcessError: Full Page Reader Error: Lamp "
                    "failure",
                    "ReportError 'Lamp failure'", std::string("ReportState '") + state + "'"));
    ++reader.state;
  }
  reader.SendError(nullptr);
  EXPECT_THAT(TakeHostCalls(), ElementsAre("ReportError ''", "ReportState ''"));
}

TEST_F(CallbackTest, CallbacksMayRunConcurrently) {
  constexpr std::size_t threadCount = 4;
  constexpr std::size_t rounds = 50;
  module->AddCondition("ReceiveEvent", "DOC_ON_WINDOW");
  module->AddAction("ReceiveEvent", "DOC_ON_WINDOW", "SetActiveScript", "scan");
  TakeHostCalls();
  std::vector<std::thread> threads;
  for (std::size_t number = 0; number < threadCount; ++number) {
    threads.emplace_back([this] {
      auto licence = std::make_unique<ReaderAamvaData>();
      ReaderBarcodeData barcode{};
      for (std::size_t round = 0; round < rounds; ++round) {
        reader.SendEvent(ReaderEventCode::DocOnWindow);
        reader.SendRecord(ReaderDataType::AamvaBarcodeRecord, *licence);
        reader.SendRecord(ReaderDataType::BarcodeQr, barcode);
        reader.SendError("Lamp failure");
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  const std::size_t callsOfARound = 4 + 24 + 1 + 2;
  EXPECT_EQ(TakeHostCalls().size(), threadCount * rounds * callsOfARound);
}

}  // namespace
}  // namespace conduit
