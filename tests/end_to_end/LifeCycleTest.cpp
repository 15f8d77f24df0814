#include "tests/support/ModuleTest.h"
#include <conduit/ReaderSwipeData.h>

namespace conduit {
namespace {

using testing::ElementsAre;

class LifeCycleTest : public ModuleTest {
 protected:
  Lines Parameters() {
    Lines parameters;
    for (std::int32_t index = -1; index <= module->GetParameterCount(); ++index) {
      const char* name = "-";
      const char* value = "";
      module->GetParameterAt(index, &name, &value);
      parameters.push_back(std::string(name) + "=" + value);
    }
    return parameters;
  }
};

TEST_F(LifeCycleTest, NullPointersAreRefused) {
  EXPECT_EQ(module.Library().create(&logger, nullptr), 6);
  EXPECT_EQ(module.Library().destroy(nullptr), 6);
}

TEST_F(LifeCycleTest, ParametersKeepTheirTextAndApplyTheirRules) {
  EXPECT_THAT(Parameters(),
              ElementsAre("-=", "BadChars=", "DateOfBirthFormat=", "ExpiryDateFormat=",
                          "IssueDateFormat=", "LogFileName=", "LogLevel=", "-="));
  struct {
    const char* name;
    const char* value;
    std::int32_t result;
  } const cases[] = {
      {"LogLevel", "5", 0},
      {"LogLevel", "6", 6},
      {"LogFileName", "", 5},
      {"LogFileName", "a.log", 0},
      {"BadChars", "", 5},
      {"BadChars", "#", 0},
      {"DateOfBirthFormat", "%Q", 6},
      {"IssueDateFormat", "%Q", 6},
      {"ExpiryDateFormat", "%Q", 6},
      {"ExpiryDateFormat", "", 0},
      {"Speed", "1", 2},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(module->SetParameter(row.name, row.value), row.result) << row.name << row.value;
  }
  EXPECT_THAT(Parameters(),
              ElementsAre("-=", "BadChars=#", "DateOfBirthFormat=", "ExpiryDateFormat=",
                          "IssueDateFormat=", "LogFileName=a.log", "LogLevel=5", "-="));
  const char* value = nullptr;
  EXPECT_EQ(module->GetParameter("BadChars", &value), 0);
  EXPECT_STREQ(value, "#");
  EXPECT_EQ(module->GetParameter("Speed", &value), 2);
  EXPECT_STREQ(value, "#") << "a refusal writes nothing";
}

TEST_F(LifeCycleTest, InitialiseStartsTheReaderWithTheSettings) {
  EXPECT_EQ(module->Initialise(), 0);
  EXPECT_THAT(journal.Take(), ElementsAre("reader EnableLogging 1 1 -1 FullPageOutputConduit.log",
                                          "reader Initialise", "ReportState 'Enabled'"));
  module->SetParameter("LogLevel", "0");
  EXPECT_THAT(journal.Take(),
              ElementsAre("log 3 NumericParameter<int>::SetValue: FullPage:LogLevel = 0"));
  EXPECT_EQ(module->Initialise(), 0);
  EXPECT_EQ(journal.Take().front(), "reader EnableLogging 1 0 -1 FullPageOutputConduit.log");
  module->SetParameter("LogLevel", "4");
  module->SetParameter("LogFileName", "other.log");
  journal.Take();
  EXPECT_EQ(module->Initialise(), 0);
  EXPECT_EQ(journal.Take().front(), "reader EnableLogging 1 4 -1 other.log");
}

TEST_F(LifeCycleTest, RefusedStartIsReportedAndCanBeRetried) {
  reader.state = static_cast<std::int32_t>(ReaderState::Error);
  for (const std::int32_t code : {3, -1}) {
    reader.startCode = code;
    EXPECT_EQ(module->Initialise(), 13);
    EXPECT_THAT(journal.Take(),
                ElementsAre("reader EnableLogging 1 1 -1 FullPageOutputConduit.log",
                            "reader Initialise", "ReportState 'Error'",
                            "log 0 FullPageInputModule::Initialise: Failed to initialise Full Page "
                            "Reader. Error Code: " +
                                std::to_string(code)));
  }
  reader.startCode = 0;
  EXPECT_EQ(module->Initialise(), 0);
}

TEST_F(LifeCycleTest, ShutdownAlwaysSucceedsAndReportsNothing) {
  EXPECT_EQ(module->Shutdown(), 0);
  EXPECT_EQ(module->Shutdown(), 0);
  EXPECT_THAT(journal.Take(), ElementsAre("reader Shutdown", "reader Shutdown"));
}

TEST_F(LifeCycleTest, DestroyDoesNotStopTheReader) {
  IInputModule* other = nullptr;
  ASSERT_EQ(module.Library().create(nullptr, &other), 0);
  other->SetHost(&host);
  other->AddCondition("ReceiveEvent", "DOC_ON_WINDOW");
  other->AddAction("ReceiveEvent", "DOC_ON_WINDOW", "SetActiveScript", "script");
  EXPECT_EQ(module.Library().destroy(other), 0);
  EXPECT_THAT(journal.Take(), ElementsAre());
}

TEST_F(LifeCycleTest, EverythingIsDeliveredWithoutALogger) {
  IInputModule* silent = nullptr;
  ASSERT_EQ(module.Library().create(nullptr, &silent), 0);
  silent->SetHost(&host);
  silent->Initialise();
  journal.Take();
  ReaderSwipeData swipe{};
  reader.SendRecord(ReaderDataType::SwipeRecord, swipe);
  reader.SendData(ReaderDataType::SwipeRecord, 0, nullptr);
  reader.SendEvent(ReaderEventCode::DocOnWindow);
  reader.SendError("fault");
  EXPECT_THAT(
      journal.Take(),
      ElementsAre("SendData INPUT_SOURCE 4 3 'MAG' last", "SendData SWIPE_MSR_TRACK_1 4 0 '' last",
                  "SendData SWIPE_MSR_TRACK_2 4 0 '' last",
                  "SendData SWIPE_MSR_TRACK_3 4 0 '' last", "ReportError ''",
                  "SendEvent DOC_ON_WINDOW", "ReportState 'Enabled'", "ReportError 'fault'",
                  "ReportState 'Enabled'"));
  silent->SetParameter("LogLevel", "9");
  EXPECT_EQ(module.Library().destroy(silent), 0);
}

}  // namespace
}  // namespace conduit
