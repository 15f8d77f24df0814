#include "Freestanding.h"
#include <conduit/ItemName.h>
#include <conduit/ParameterName.h>
#include <conduit/Reaction.h>

/// A host that plays the session named in HALDEN_READER_SESSION through the module beside it,
/// and writes every call of the module as a line, in the form of the recorded journal.

namespace conduit {
namespace {

class JournalHost final : public IModuleLogger, public IInputModuleHost {
 public:
  void Reserved1() override { Line() << "a reserved operation"; }
  void Reserved2() override { Line() << "a reserved operation"; }
  void Reserved3() override { Line() << "a reserved operation"; }
  void Reserved4() override { Line() << "a reserved operation"; }

  void Log(std::int32_t level, const char* tag, const char* message) override {
    if (playing) {
      Line line;
      line << "log " << level << " " << tag << ": ";
      line.Escape(message, Length(message));
    }
  }

  std::int32_t SendData(const char* name, ItemType itemType, std::int32_t length, const void* data,
                        IStringMap* properties, bool last) override {
    Line line;
    line << "SendData " << name << " " << itemType << " " << length;
    if (itemType == ItemTypeText) {
      line << " '";
      line.Escape(static_cast<const char*>(data), static_cast<std::size_t>(length)) << "'";
    }
    if (properties != nullptr) {
      line << " feature=" << properties->Get(ItemProperty::Feature);
    }
    line << (last ? " last" : " more");
    return 0;
  }
  void SendEvent(const char* name) override { Line() << "SendEvent " << name; }
  void BeginData() override { Line() << "BeginData"; }
  void EndData() override { Line() << "EndData"; }
  std::int32_t SetActiveScript(const char* name) override {
    Line() << "SetActiveScript " << name;
    return 0;
  }
  void ReportState(const char* text) override {
    Line() << "ReportState '" << text << "'";
    if (AreEqual(text, "Terminated")) {
      SetEvent(ended);
    }
  }
  void ReportError(const char* text) override {
    // The state report of Initialise precedes the reader's calls.
    if (GetCurrentThreadId() != hostThread) {
      WaitForSingleObject(started, Forever);
    }
    Line() << "ReportError '" << text << "'";
  }

  void Play(IInputModule* module) {
    module->SetHost(this);
    Expect("SetParameter", module->SetParameter(ParameterName::LogFileName, "session_host.log"));
    Expect("SetParameter", module->SetParameter(ParameterName::DateOfBirthFormat, "%d.%m.%Y"));
    Expect("AddCondition", module->AddCondition(ConditionKind::ReceiveEvent, "DOC_ON_WINDOW"));
    Expect("AddAction", module->AddAction(ConditionKind::ReceiveEvent, "DOC_ON_WINDOW",
                                          ActionKind::SetActiveScript, "greet"));
    playing = true;
    Expect("Initialise", module->Initialise());
    SetEvent(started);
    constexpr std::uint32_t patience = 60000;
    Expect("the end of the session",
           static_cast<std::int32_t>(WaitForSingleObject(ended, patience)));
    Expect("Shutdown", module->Shutdown());
  }

 private:
  /// Writes a line that is not in the journal when a result is not 0.
  static void Expect(const char* what, std::int32_t answer) {
    if (answer != 0) {
      Line() << what << " answered " << answer;
    }
  }

  bool playing = false;
  const std::uint32_t hostThread = GetCurrentThreadId();
  void* const started = CreateEventA(nullptr, 1, 0, nullptr);
  void* const ended = CreateEventA(nullptr, 1, 0, nullptr);
};

}  // namespace
}  // namespace conduit

extern "C" void Start() {
  const conduit::ModuleFunctions functions = conduit::LoadModule();
  conduit::JournalHost host;
  conduit::IInputModule* module = nullptr;
  functions.create(&host, &module);
  host.Play(module);
  ExitProcess(static_cast<std::uint32_t>(functions.destroy(module)));
}
