#include "Freestanding.h"
#include <conduit/ItemName.h>
#include <conduit/MessageLevel.h>
#include <conduit/ParameterName.h>
#include <conduit/Reaction.h>
#include <conduit/ResultCode.h>

/// A host that calls every operation of a module and of a barcode's map, in vtable order.
/// The expected effect of each differs from its neighbours', so that a vtable that is off by
/// one slot fails.

namespace conduit {
namespace {

constexpr char Unwritten[] = "not written";
constexpr char Document[] = "DOC_ON_WINDOW";

std::uint32_t failures = 0;

void Expect(const char* what, bool isSo) {
  if (!isSo) {
    ++failures;
    Line() << "not so: " << what;
  }
}

void Expect(const char* what, std::int32_t actual, std::int32_t expected) {
  if (actual != expected) {
    ++failures;
    Line() << what << ": " << actual << " instead of " << expected;
  }
}

void Expect(const char* what, const char* actual, const char* expected) {
  if (actual == nullptr || !AreEqual(actual, expected)) {
    ++failures;
    Line() << what << ": " << (actual != nullptr ? actual : "(null)") << " instead of " << expected;
  }
}

class Logger final : public IModuleLogger {
 public:
  void Reserved1() override { Expect("Reserved1 of the logger is not called", false); }
  void Reserved2() override { Expect("Reserved2 of the logger is not called", false); }
  void Reserved3() override { Expect("Reserved3 of the logger is not called", false); }
  void Reserved4() override { Expect("Reserved4 of the logger is not called", false); }
  void Log(std::int32_t newLevel, const char* /*tag*/, const char* /*message*/) override {
    level = newLevel;
  }

  std::int32_t level = -1;  ///< of the last line
};

void UseMap(IStringMap& map) {
  Expect("Count", map.Count(), 1);
  map.Set("scan", "7");
  map.Set("scan", nullptr);
  Expect("Count after Set of one key, twice", map.Count(), 2);
  Expect("Get", map.Get(ItemProperty::Feature), "0");
  Expect("Get of what was set to null", map.Get("scan"), "");
  Expect("Get of an unknown key gives null", map.Get("Feature") == nullptr);
  map.RemoveAll();
  Expect("Count after RemoveAll", map.Count(), 0);
  map.Set("kept", "1");
  map.Set("removed", "2");
  map.Remove("removed");
  map.Remove("unknown");
  Expect("Get of what was removed gives null", map.Get("removed") == nullptr);
  Expect("Get of what was not", map.Get("kept"), "1");
}

/// Calls Shutdown within the delivery of the first barcode.
class Host final : public IInputModuleHost {
 public:
  void Reserved1() override { Expect("Reserved1 of the host is not called", false); }
  void Reserved2() override { Expect("Reserved2 of the host is not called", false); }
  void Reserved3() override { Expect("Reserved3 of the host is not called", false); }
  std::int32_t SendData(const char* /*name*/, ItemType /*itemType*/, std::int32_t /*length*/,
                        const void* /*data*/, IStringMap* properties, bool /*last*/) override {
    ++items;
    if (properties != nullptr && itemsUpToBarcode == 0) {
      itemsUpToBarcode = items;
      UseMap(*properties);
      Expect("Shutdown from within a delivery", module->Shutdown(), ResultSuccess);
      SetEvent(barcodeCame);
    }
    return 0;
  }
  void SendEvent(const char* /*name*/) override { ++events; }
  void BeginData() override { ++begins; }
  void EndData() override { ++ends; }
  std::int32_t SetActiveScript(const char* name) override {
    Expect("the script", name, "greet");
    ++scripts;
    return 0;
  }
  void ReportState(const char* /*text*/) override { ++states; }
  void ReportError(const char* text) override { ++(Length(text) == 0 ? noErrors : errors); }

  IInputModule* module = nullptr;
  void* const barcodeCame = CreateEventA(nullptr, 1, 0, nullptr);
  std::int32_t items = 0;
  std::int32_t itemsUpToBarcode = 0;
  std::int32_t events = 0;
  std::int32_t begins = 0;
  std::int32_t ends = 0;
  std::int32_t scripts = 0;
  std::int32_t states = 0;
  std::int32_t errors = 0;
  std::int32_t noErrors = 0;  ///< number of empty error reports
};

void UseParameters(IInputModule& module, const Logger& logger) {
  constexpr struct {
    const char* name;
    const char* value;
    std::int32_t result;
    MessageLevel level;  // of the log line
  } cases[] = {
      {ParameterName::LogLevel, "2", ResultSuccess, MessageConfiguration},
      {"No such name", "2", ResultUnknownParameter, MessageUnknownName},
      {nullptr, "2", ResultUnknownParameter, MessageUnknownName},
      {ParameterName::BadChars, "", ResultValueMissing, MessageFailure},
      {ParameterName::BadChars, nullptr, ResultValueMissing, MessageFailure},
      {ParameterName::LogLevel, "9", ResultInvalidValue, MessageFailure},
      {ParameterName::DateOfBirthFormat, "%Q", ResultInvalidValue, MessageFailure},
  };
  for (const auto& one : cases) {
    Expect("SetParameter", module.SetParameter(one.name, one.value), one.result);
    Expect("the level of what SetParameter logs", logger.level, one.level);
  }
  const char* value = Unwritten;
  Expect("GetParameter of an unknown name", module.GetParameter("No such name", &value),
         ResultUnknownParameter);
  Expect("its value", value, Unwritten);
  Expect("GetParameter", module.GetParameter(ParameterName::LogLevel, &value), ResultSuccess);
  Expect("the value that was not refused", value, "2");
}

void StartWithoutSession(IInputModule& module, Host& host, const Logger& logger) {
  Host replaced;
  module.SetHost(&replaced);
  module.SetHost(&host);
  char session[1024] = "";
  GetEnvironmentVariableA(SessionVariable, session, sizeof session);
  SetEnvironmentVariableA(SessionVariable, "no such file");
  Expect("Initialise of a reader that refuses", module.Initialise(), ResultReaderNotStarted);
  SetEnvironmentVariableA(SessionVariable, session);
  Expect("the level of what Initialise logs", logger.level, MessageFailure);
  Expect("the errors that the reader reports", host.errors, 1);
  Expect("the states, of that error and of Initialise", host.states, 2);
  Expect("the states that the host before is told", replaced.states, 0);
  Expect("Shutdown of a reader that did not start", module.Shutdown(), ResultSuccess);
}

void UseReactions(IInputModule& module) {
  const auto addAction = [&module](const char* event, const char* action) {
    return module.AddAction(ConditionKind::ReceiveEvent, event, action, "greet");
  };
  Expect("AddCondition of an unknown name", module.AddCondition("No such name", Document),
         ResultUnknownCondition);
  Expect("AddCondition", module.AddCondition(ConditionKind::ReceiveEvent, Document), ResultSuccess);
  Expect("AddAction to what was not added", addAction("DATA_READ", ActionKind::SetActiveScript),
         ResultUnknownCondition);
  Expect("AddAction of an unknown name", addAction(Document, "No such name"), ResultUnknownAction);
  Expect("AddAction", addAction(Document, ActionKind::SetActiveScript), ResultSuccess);
}

void UseList(IInputModule& module, std::int32_t (IInputModule::*countEntries)(),
             void (IInputModule::*get)(std::int32_t, const char**, const char**),
             std::int32_t count, const char* lastName, const char* lastValue) {
  const char* name = Unwritten;
  const char* value = Unwritten;
  Expect("the length of a list", (module.*countEntries)(), count);
  (module.*get)(count, &name, &value);
  (module.*get)(-1, &name, &value);
  (module.*get)(0, nullptr, &value);
  (module.*get)(0, &name, nullptr);
  Expect("the name of an entry that is none", name, Unwritten);
  Expect("the value of an entry that is none", value, Unwritten);
  (module.*get)(count - 1, &name, &value);
  Expect("the name of the last entry", name, lastName);
  Expect("the value of the last entry", value, lastValue);
}

void PlayToBarcode(IInputModule& module, Host& host) {
  Expect("Initialise", module.Initialise(), ResultSuccess);
  constexpr std::uint32_t patience = 30000;
  Expect("a barcode comes", WaitForSingleObject(host.barcodeCame, patience) == Signalled);
  Expect("Shutdown", module.Shutdown(), ResultSuccess);

  // The barcode is in the second document.
  Expect("the calls of BeginData", host.begins, 2);
  Expect("the calls of EndData", host.ends, 1);
  Expect("the calls of SetActiveScript", host.scripts, 2);
  Expect("the items that come once Shutdown has been called", host.items - host.itemsUpToBarcode,
         0);
  Expect("the reports that no error stands, one for each event", host.noErrors, host.events);
  Expect("the states, one more for each event and for Initialise", host.states, host.events + 3);
}

/// Returns whether the address is an allocated block of one of the process's heaps.
bool IsAllocated(const void* block) {
  void* heaps[64];
  const std::uint32_t count = GetProcessHeaps(64, heaps);
  for (std::uint32_t i = 0; i < count; ++i) {
    if (HeapValidate(heaps[i], 0, block) != 0) {
      return true;
    }
  }
  return false;
}

/// Calls the destructor slot as this compiler does for a destructor and for delete, and as
/// the module's library does.
void UseDestructors(const ModuleFunctions& functions) {
  constexpr std::int32_t moduleItself = 2;
  constexpr std::int32_t whatItOwns = 1;
  constexpr struct {
    const char* what;
    void (*end)(IInputModule* module, DestroyFunction destroy);
    std::int32_t left;
  } ways[] = {
      {"memory left by the destructor",
       [](IInputModule* module, DestroyFunction) { module->~IInputModule(); }, moduleItself},
      {"memory left by delete", [](IInputModule* module, DestroyFunction) { delete module; }, 0},
      {"memory left by CIM_Destroy",
       [](IInputModule* module, DestroyFunction destroy) { destroy(module); }, 0},
  };
  for (const auto& way : ways) {
    IInputModule* module = nullptr;
    functions.create(nullptr, &module);
    module->AddCondition(ConditionKind::ReceiveEvent, Document);
    const char* name = nullptr;
    const char* value = nullptr;
    module->GetConditionAt(0, &name, &value);
    const auto inUse = [module, value] {
      return (IsAllocated(module) ? moduleItself : 0) + (IsAllocated(value) ? whatItOwns : 0);
    };
    Expect("memory of a module", inUse(), moduleItself + whatItOwns);
    way.end(module, functions.destroy);
    Expect(way.what, inUse(), way.left);
  }
}

void Run() {
  const ModuleFunctions functions = LoadModule();
  Logger logger;
  Host host;
  IInputModule* module = nullptr;
  Expect("CIM_GetInputModule without a result pointer", functions.create(&logger, nullptr),
         ResultNullPointer);
  Expect("CIM_Destroy of null", functions.destroy(nullptr), ResultNullPointer);
  Expect("CIM_GetInputModule", functions.create(&logger, &module), ResultSuccess);
  host.module = module;
  module->SetParameter(ParameterName::LogFileName, "every_operation.log");
  UseParameters(*module, logger);
  StartWithoutSession(*module, host, logger);
  UseReactions(*module);
  UseList(*module, &IInputModule::GetParameterCount, &IInputModule::GetParameterAt, 6,
          ParameterName::LogLevel, "2");
  UseList(*module, &IInputModule::GetConditionCount, &IInputModule::GetConditionAt, 1,
          ConditionKind::ReceiveEvent, Document);
  PlayToBarcode(*module, host);
  Expect("CIM_Destroy", functions.destroy(module), ResultSuccess);
  UseDestructors(functions);
}

}  // namespace
}  // namespace conduit

extern "C" void Start() {
  conduit::Run();
  ExitProcess(conduit::failures == 0 ? 0 : 1);
}
