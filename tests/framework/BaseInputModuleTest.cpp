#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "framework/BaseInputModule.h"
#include "tests/support/Journal.h"

namespace conduit {
namespace {

using testing::ElementsAre;

/// A module without a device.
class BareModule : public BaseInputModule {
 public:
  using BaseInputModule::BaseInputModule;
  std::int32_t Initialise() override { return 0; }
  std::int32_t Shutdown() override { return 0; }
};

class BaseInputModuleTest : public testing::Test {
 protected:
  std::vector<std::string> Conditions() {
    std::vector<std::string> conditions;
    for (std::int32_t index = -1; index <= module.GetConditionCount(); ++index) {
      const char* name = "";
      const char* value = "-";
      module.GetConditionAt(index, &name, &value);
      conditions.push_back(std::string(name) + value);
      module.GetConditionAt(index, nullptr, &value);
      module.GetConditionAt(index, &name, nullptr);
    }
    return conditions;
  }

  Journal journal;
  RecordingLogger logger{journal};
  RecordingHost host{journal};
  BareModule module{&logger};
};

TEST_F(BaseInputModuleTest, ListsConditionsInOrderOfAddition) {
  EXPECT_THAT(Conditions(), ElementsAre("-", "-"));
  EXPECT_EQ(module.AddCondition("ReceiveEvent", "DOC_ON_WINDOW"), 0);
  EXPECT_EQ(module.AddCondition("ReceiveEvent", nullptr), 0);
  EXPECT_EQ(module.AddCondition("ReceiveEvent", "DOC_ON_WINDOW"), 0);
  EXPECT_EQ(module.AddCondition("receiveevent", "DOC_ON_WINDOW"), 3);
  EXPECT_EQ(module.AddCondition("ReceiveEvent ", "DOC_ON_WINDOW"), 3);
  EXPECT_EQ(module.AddCondition(nullptr, "DOC_ON_WINDOW"), 3);
  EXPECT_THAT(Conditions(), ElementsAre("-", "ReceiveEventDOC_ON_WINDOW", "ReceiveEvent",
                                        "ReceiveEventDOC_ON_WINDOW", "-"));
  EXPECT_THAT(
      journal.Take(),
      ElementsAre("log 3 BaseInputModule::CreateCondition: Created Condition \"ReceiveEvent, "
                  "Value: DOC_ON_WINDOW",
                  "log 3 BaseInputModule::CreateCondition: Created Condition \"ReceiveEvent, "
                  "Value: ",
                  "log 3 BaseInputModule::CreateCondition: Created Condition \"ReceiveEvent, "
                  "Value: DOC_ON_WINDOW",
                  "log 0 BaseInputModule::AddCondition: Unknown condition name: receiveevent",
                  "log 0 BaseInputModule::AddCondition: Unknown condition name: ReceiveEvent ",
                  "log 0 BaseInputModule::AddCondition: Unknown condition name: "));
}

TEST_F(BaseInputModuleTest, AttachesActionsToKnownConditionsOnly) {
  module.AddCondition("ReceiveEvent", "DOC_ON_WINDOW");
  journal.Take();
  EXPECT_EQ(module.AddAction("ReceiveEvent", "DOC_REMOVED", "SetActiveScript", "a"), 3);
  EXPECT_EQ(module.AddAction("ReceiveEvent", "DOC_ON_WINDOW", "SetActiveScript ", "a"), 4);
  EXPECT_EQ(module.AddAction("ReceiveEvent", "DOC_ON_WINDOW", nullptr, nullptr), 4);
  EXPECT_EQ(module.AddAction("ReceiveEvent", "DOC_ON_WINDOW", "SetActiveScript", "a"), 0);
  EXPECT_THAT(journal.Take(),
              ElementsAre("log 0 BaseInputModule::AddAction: Unknown condition name: ReceiveEvent",
                          "log 0 BaseInputModule::AddAction: Unknown action name: SetActiveScript ",
                          "log 0 BaseInputModule::AddAction: Unknown action name: ",
                          "log 3 BaseInputModule::CreateAction: Created Action "
                          "\"SetActiveScript, Value: a"));
}

TEST_F(BaseInputModuleTest, EventRunsActionsUpToTheFirstFailure) {
  module.AddCondition("ReceiveEvent", "DOC_ON_WINDOW");
  module.AddCondition("ReceiveEvent", "DOC_ON_WINDOW");
  module.AddCondition("ReceiveEvent", "");
  for (const char* const script : {"one", "two", "three"}) {
    module.AddAction("ReceiveEvent", "DOC_ON_WINDOW", "SetActiveScript", script);
  }
  module.AddAction("ReceiveEvent", "", "SetActiveScript", nullptr);
  journal.Take();

  EXPECT_EQ(module.ReceiveEvent("DOC_ON_WINDOW"), 5) << "no host yet";
  EXPECT_THAT(journal.Take(), ElementsAre());

  module.SetHost(&host);
  EXPECT_EQ(module.ReceiveEvent("DOC_ON_WINDOW"), 0);
  EXPECT_THAT(journal.Take(),
              ElementsAre("SetActiveScript one", "SetActiveScript two", "SetActiveScript three"));
  host.failingScript = "two";
  EXPECT_EQ(module.ReceiveEvent("DOC_ON_WINDOW"), 7);
  EXPECT_THAT(journal.Take(), ElementsAre("SetActiveScript one", "SetActiveScript two"));
  EXPECT_EQ(module.ReceiveEvent("doc_on_window"), 0);
  EXPECT_THAT(journal.Take(), ElementsAre());
  EXPECT_EQ(module.ReceiveEvent(nullptr), 0);
  EXPECT_THAT(journal.Take(), ElementsAre("SetActiveScript "));
  module.SetHost(nullptr);
  EXPECT_EQ(module.ReceiveEvent(""), 5);
}

TEST_F(BaseInputModuleTest, TheFirstOfEqualConditionsFires) {
  module.SetHost(&host);
  module.AddCondition("ReceiveEvent", "A");
  module.AddAction("ReceiveEvent", "A", "SetActiveScript", "one");
  module.AddCondition("ReceiveEvent", "A");
  EXPECT_EQ(module.AddAction("ReceiveEvent", "B", "Other", ""), 3) << "before the action's name";
  journal.Take();
  module.ReceiveEvent("A");
  EXPECT_THAT(journal.Take(), ElementsAre("SetActiveScript one"));
}

/// A host that adds an action to the same event whenever a script is set.
class AddingHost final : public IInputModuleHost {
 public:
  explicit AddingHost(BaseInputModule& module) : module(module) {}
  std::int32_t SendData(const char*, ItemType, std::int32_t, const void*, IStringMap*,
                        bool) override {
    return 0;
  }
  void SendEvent(const char*) override {}
  void BeginData() override {}
  void EndData() override {}
  void ReportState(const char*) override {}
  void ReportError(const char*) override {}
  std::int32_t SetActiveScript(const char* /*name*/) override {
    ++scripts;
    return module.AddAction("ReceiveEvent", "A", "SetActiveScript", "more");
  }

  BaseInputModule& module;
  int scripts = 0;
};

TEST_F(BaseInputModuleTest, ActionsAddedDuringAnEventDoNotRunForIt) {
  AddingHost adding(module);
  module.SetHost(&adding);
  module.AddCondition("ReceiveEvent", "A");
  module.AddAction("ReceiveEvent", "A", "SetActiveScript", "one");
  module.AddAction("ReceiveEvent", "A", "SetActiveScript", "two");
  EXPECT_EQ(module.ReceiveEvent("A"), 0);
  EXPECT_EQ(adding.scripts, 2);
}

TEST(BaseInputModule, WorksWithoutALogger) {
  BareModule module(nullptr);
  EXPECT_EQ(module.AddCondition("ReceiveEvent", "A"), 0);
  EXPECT_EQ(module.AddCondition("Other", "A"), 3);
  EXPECT_EQ(module.AddAction("ReceiveEvent", "A", "SetActiveScript", "s"), 0);
  EXPECT_EQ(module.AddAction("ReceiveEvent", "A", "Other", "s"), 4);
  EXPECT_EQ(module.AddAction("ReceiveEvent", "B", "SetActiveScript", "s"), 3);
  EXPECT_EQ(module.SetParameter("Speed", "1"), 2);
  EXPECT_EQ(module.GetParameterCount(), 0);
}

}  // namespace
}  // namespace conduit
