#include <functional>
#include <limits>

#include "tests/support/ModuleTest.h"
#include <conduit/ReaderAamvaData.h>
#include <conduit/ReaderBarcodeData.h>
#include <conduit/ReaderCodelineData.h>
#include <conduit/ReaderSwipeData.h>

namespace conduit {
namespace {

using testing::ElementsAre;

/// Calls `meddle` within the delivery of the item `meddleAt`.
class MeddlingHost final : public IInputModuleHost {
 public:
  explicit MeddlingHost(Journal& journal) : journal(journal) {}

  std::int32_t SendData(const char* name, ItemType /*itemType*/, std::int32_t /*length*/,
                        const void* /*data*/, IStringMap* /*properties*/, bool /*last*/) override {
    journal.Write(name);
    if (meddleAt == name) {
      meddle();
    }
    return 0;
  }
  void SendEvent(const char* name) override { journal.Write(name); }
  void BeginData() override { journal.Write("BeginData"); }
  void EndData() override { journal.Write("EndData"); }
  std::int32_t SetActiveScript(const char* /*name*/) override { return 0; }
  void ReportState(const char* text) override { journal.Write(text); }
  void ReportError(const char* /*text*/) override {}

  std::string meddleAt;
  std::function<void()> meddle;

 private:
  Journal& journal;
};

class FaultTest : public ModuleTest {
 protected:
  FaultTest() {
    module->AddCondition("ReceiveEvent", "DOC_ON_WINDOW");
    module->AddAction("ReceiveEvent", "DOC_ON_WINDOW", "SetActiveScript", "first");
    module->AddAction("ReceiveEvent", "DOC_ON_WINDOW", "SetActiveScript", "second");
    TakeHostCalls();
  }

  /// Sends one item of every kind.
  Lines PlayEverything() {
    ReaderCodelineData page{};
    ReaderSwipeData swipe{};
    ReaderBarcodeData barcode{};
    static ReaderAamvaData licence{};
    reader.SendEvent(ReaderEventCode::DocOnWindow);
    reader.SendEvent(ReaderEventCode::StartOfDocumentData);
    reader.SendRecord(ReaderDataType::AamvaBarcodeRecord, licence);
    reader.SendRecord(ReaderDataType::SwipeRecord, swipe);
    reader.SendRecord(ReaderDataType::BarcodeQr, barcode);
    reader.SendRecord(ReaderDataType::CodelineRecord, page);
    reader.SendData(ReaderDataType::ImageVis, 1, &page);
    reader.SendEvent(ReaderEventCode::EndOfDocumentData);
    return TakeHostCalls();
  }
};

TEST_F(FaultTest, HostThatAnswersEveryCallWithAnErrorStillGetsEveryCall) {
  Lines expected = PlayEverything();
  for (const std::int32_t answer : {-1, 13, std::numeric_limits<std::int32_t>::min()}) {
    host.otherAnswer = answer;
    EXPECT_EQ(PlayEverything(), expected) << answer;
  }
  // A failed script skips the next one, and nothing else.
  host.failingScript = "first";
  std::erase(expected, "SetActiveScript second");
  EXPECT_EQ(PlayEverything(), expected);
}

TEST_F(FaultTest, ErrorAndDisconnectionKeepTheirOrderWithinADocument) {
  ReaderSwipeData swipe{};
  reader.SendEvent(ReaderEventCode::StartOfSwipeData);
  reader.SendError("Lamp failure");
  reader.SendRecord(ReaderDataType::SwipeRecord, swipe);
  reader.state = static_cast<std::int32_t>(ReaderState::Terminated);
  reader.SendEvent(ReaderEventCode::DeviceDisconnected);
  reader.SendEvent(ReaderEventCode::EndOfSwipeData);
  EXPECT_THAT(
      TakeHostCalls(),
      ElementsAre("ReportError ''", "BeginData", "SendEvent START_OF_SWIPE_DATA",
                  "ReportState 'Enabled'", "ReportError 'Lamp failure'", "ReportState 'Enabled'",
                  "SendData INPUT_SOURCE 4 3 'MAG' last", "SendData SWIPE_MSR_TRACK_1 4 0 '' last",
                  "SendData SWIPE_MSR_TRACK_2 4 0 '' last",
                  "SendData SWIPE_MSR_TRACK_3 4 0 '' last", "ReportError ''",
                  "SendEvent DEVICE_DISCONNECTED", "ReportState 'Terminated'", "ReportError ''",
                  "EndData", "SendEvent END_OF_SWIPE_DATA", "ReportState 'Terminated'"));
}

TEST_F(FaultTest, HostMayShutDownOrBeReenteredWithinACall) {
  MeddlingHost meddler(journal);
  module->SetHost(&meddler);
  ReaderSwipeData swipe{};
  meddler.meddleAt = "SWIPE_MSR_TRACK_1";
  meddler.meddle = [this] { EXPECT_EQ(module->Shutdown(), 0); };
  reader.SendRecord(ReaderDataType::SwipeRecord, swipe);
  EXPECT_THAT(TakeHostCalls(), ElementsAre("INPUT_SOURCE", "SWIPE_MSR_TRACK_1", "reader Shutdown",
                                           "SWIPE_MSR_TRACK_2", "SWIPE_MSR_TRACK_3"));
  // The reader calls back while the host is still in its call.
  meddler.meddle = [this] { reader.SendEvent(ReaderEventCode::DeviceDisconnected); };
  reader.SendRecord(ReaderDataType::SwipeRecord, swipe);
  EXPECT_THAT(TakeHostCalls(),
              ElementsAre("INPUT_SOURCE", "SWIPE_MSR_TRACK_1", "DEVICE_DISCONNECTED", "Enabled",
                          "SWIPE_MSR_TRACK_2", "SWIPE_MSR_TRACK_3"));
}

TEST_F(FaultTest, StartsAfterTwentyRefusals) {
  const Lines expected = PlayEverything();
  reader.startCode = 3;
  for (int attempt = 0; attempt < 20; ++attempt) {
    EXPECT_EQ(module->Initialise(), 13);
  }
  reader.startCode = 0;
  EXPECT_EQ(module->Initialise(), 0);
  TakeHostCalls();
  EXPECT_EQ(PlayEverything(), expected);
}

}  // namespace
}  // namespace conduit
