#include "Freestanding.h"
#include <conduit/Implements.h>
#include <conduit/ItemName.h>
#include <conduit/MessageLevel.h>
#include <conduit/Reaction.h>
#include <conduit/ReaderEventCode.h>
#include <conduit/ResultCode.h>

/// A module whose device reads one document at each start: a surname, from a parameter, and
/// two barcodes. The device exists while the file named in HALDEN_READER_SESSION does.

namespace conduit {
namespace {

/// An owned text.
class Text {
 public:
  explicit Text(const char* text) { Set(text); }
  ~Text() { delete[] bytes; }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  void Set(const char* text) {
    const std::size_t length = Length(text);
    char* const copy = new char[length + 1];
    for (std::size_t i = 0; i < length; ++i) {
      copy[i] = text[i];
    }
    copy[length] = '\0';
    delete[] bytes;
    bytes = copy;
  }
  const char* Bytes() const { return bytes; }

 private:
  char* bytes = nullptr;
};

/// An event and the script to set for it; a node of a list in order of addition.
struct Reaction {
  Text event;
  Text script;
  Reaction* next;
};

class Reactions {
 public:
  Reactions() = default;
  Reactions(const Reactions&) = delete;
  Reactions& operator=(const Reactions&) = delete;
  ~Reactions() {
    while (first != nullptr) {
      Reaction* const gone = first;
      first = gone->next;
      delete gone;
    }
  }

  void Add(const char* event, const char* script) {
    Reaction** end = &first;
    while (*end != nullptr) {
      end = &(*end)->next;
    }
    *end = new Reaction{Text(event), Text(script), nullptr};
  }

  /// Returns the first one for the event at or after a position, or null.
  static const Reaction* Find(const Reaction* from, const char* event) {
    while (from != nullptr && !AreEqual(from->event.Bytes(), event)) {
      from = from->next;
    }
    return from;
  }

  Reaction* first = nullptr;
};

/// The only property of a barcode; read-only for hosts.
class Feature final : public Implements<IStringMap> {
 public:
  explicit Feature(const char* position) : position(position) {}
  std::int32_t Count() override { return 1; }
  void Set(const char* /*key*/, const char* /*value*/) override {}
  const char* Get(const char* key) override {
    return AreEqual(key, ItemProperty::Feature) ? position : nullptr;
  }
  void RemoveAll() override {}
  void Remove(const char* /*key*/) override {}

 private:
  const char* position;
};

class SurnameModule final : public Implements<IInputModule> {
 public:
  explicit SurnameModule(IModuleLogger* logger) : logger(logger) {}
  SurnameModule(const SurnameModule&) = delete;
  SurnameModule& operator=(const SurnameModule&) = delete;
  ~SurnameModule() override { CloseHandle(stop); }

  std::int32_t SetParameter(const char* name, const char* value) override {
    if (!AreEqual(name, Surname)) {
      Log(MessageUnknownName, "SurnameModule::SetParameter", "There is no such parameter");
      return ResultUnknownParameter;
    }
    if (Length(value) == 0) {
      Log(MessageFailure, "SurnameModule::SetParameter", "Surname has no value");
      return ResultValueMissing;
    }
    surname.Set(value);
    Log(MessageConfiguration, "SurnameModule::SetParameter", value);
    return ResultSuccess;
  }
  std::int32_t GetParameter(const char* name, const char** value) override {
    if (!AreEqual(name, Surname)) {
      return ResultUnknownParameter;
    }
    *value = surname.Bytes();
    return ResultSuccess;
  }

  void SetHost(IInputModuleHost* newHost) override { host = newHost; }

  std::int32_t Initialise() override {
    Shutdown();
    char file[1024] = "";
    GetEnvironmentVariableA(SessionVariable, file, sizeof file);
    constexpr std::uint32_t noFile = 0xFFFFFFFF;
    const bool isThere = GetFileAttributesA(file) != noFile;
    host->ReportState(isThere ? "Enabled" : "Not Initialised");
    if (!isThere) {
      Log(MessageFailure, "SurnameModule::Initialise", "The device is not there");
      return ResultReaderNotStarted;
    }
    constexpr std::uint32_t suspended = 4;  // until its thread id is stored
    ResetEvent(stop);
    reader = CreateThread(nullptr, 0, Read, this, suspended, &readerId);
    ResumeThread(reader);
    return ResultSuccess;
  }

  std::int32_t Shutdown() override {
    SetEvent(stop);
    if (reader != nullptr && GetCurrentThreadId() != readerId) {
      WaitForSingleObject(reader, Forever);
      CloseHandle(reader);
      reader = nullptr;
    }
    return ResultSuccess;
  }

  std::int32_t AddCondition(const char* name, const char* value) override {
    if (!AreEqual(name, ConditionKind::ReceiveEvent)) {
      return ResultUnknownCondition;
    }
    conditions.Add(value, "");
    return ResultSuccess;
  }
  std::int32_t AddAction(const char* conditionName, const char* conditionValue,
                         const char* actionName, const char* actionValue) override {
    if (!AreEqual(conditionName, ConditionKind::ReceiveEvent) ||
        Reactions::Find(conditions.first, conditionValue) == nullptr) {
      return ResultUnknownCondition;
    }
    if (!AreEqual(actionName, ActionKind::SetActiveScript)) {
      return ResultUnknownAction;
    }
    actions.Add(conditionValue, actionValue);
    return ResultSuccess;
  }

  std::int32_t GetParameterCount() override { return 1; }
  void GetParameterAt(std::int32_t index, const char** name, const char** value) override {
    if (index == 0 && name != nullptr && value != nullptr) {
      *name = Surname;
      *value = surname.Bytes();
    }
  }
  std::int32_t GetConditionCount() override {
    std::int32_t count = 0;
    for (const Reaction* one = conditions.first; one != nullptr; one = one->next) {
      ++count;
    }
    return count;
  }
  void GetConditionAt(std::int32_t index, const char** name, const char** value) override {
    const Reaction* one = conditions.first;
    for (std::int32_t i = 0; i < index && one != nullptr; ++i) {
      one = one->next;
    }
    if (index >= 0 && one != nullptr && name != nullptr && value != nullptr) {
      *name = ConditionKind::ReceiveEvent;
      *value = one->event.Bytes();
    }
  }

 private:
  static constexpr char Surname[] = "Surname";

  static std::uint32_t Read(void* module) {
    static_cast<SurnameModule*>(module)->ReadDocument();
    return 0;
  }

  void ReadDocument() {
    SendEvent(ReaderEventCode::DeviceConnected, "Enabled");
    SendEvent(ReaderEventCode::DocOnWindow, "Enabled");
    SendEvent(ReaderEventCode::StartOfDocumentData, "Reading");
    SendText(ItemName::CodelineSurname, surname.Bytes());
    SendBarcode("0", "first", false);
    SendBarcode("1", "second", true);
    SendEvent(ReaderEventCode::EndOfDocumentData, "Enabled");
    SendEvent(ReaderEventCode::DeviceDisconnected, "Terminated");
  }

  /// Waits briefly, as a device does.
  bool IsStopped() {
    constexpr std::uint32_t moment = 5;
    return WaitForSingleObject(stop, moment) == Signalled;
  }

  void SendEvent(ReaderEventCode code, const char* stateAfter) {
    if (IsStopped()) {
      return;
    }
    const char* const name = ReaderEventNames[static_cast<std::int32_t>(code)];
    host->ReportError("");
    Log(MessageTrace, "SurnameModule::SendEvent", name);
    React(name);
    if (code == ReaderEventCode::StartOfDocumentData) {
      host->BeginData();
    }
    if (code == ReaderEventCode::EndOfDocumentData) {
      host->EndData();
    }
    host->SendEvent(name);
    host->ReportState(stateAfter);
  }

  void React(const char* event) {
    const Reaction* action = Reactions::Find(actions.first, event);
    while (action != nullptr && host->SetActiveScript(action->script.Bytes()) == ResultSuccess) {
      action = Reactions::Find(action->next, event);
    }
  }

  void SendText(const char* name, const char* text) {
    if (!IsStopped()) {
      host->SendData(name, ItemTypeText, static_cast<std::int32_t>(Length(text)), text, nullptr,
                     true);
    }
  }

  void SendBarcode(const char* position, const char* data, bool last) {
    Feature feature(position);
    if (!IsStopped()) {
      host->SendData("BARCODE_QRCODE", ItemTypeText, static_cast<std::int32_t>(Length(data)), data,
                     &feature, last);
    }
  }

  void Log(MessageLevel level, const char* tag, const char* message) {
    if (logger != nullptr) {
      logger->Log(level, tag, message);
    }
  }

  IModuleLogger* const logger;
  IInputModuleHost* host = nullptr;
  Text surname{""};
  Reactions conditions;
  Reactions actions;
  void* const stop = CreateEventA(nullptr, 1, 0, nullptr);
  void* reader = nullptr;
  std::uint32_t readerId = 0;
};

}  // namespace
}  // namespace conduit

std::int32_t CIM_GetInputModule(conduit::IModuleLogger* logger, conduit::IInputModule** module) {
  if (module == nullptr) {
    return conduit::ResultNullPointer;
  }
  *module = new conduit::SurnameModule(logger);
  return conduit::ResultSuccess;
}

std::int32_t CIM_Destroy(conduit::IInputModule* module) {
  if (module == nullptr) {
    return conduit::ResultNullPointer;
  }
  conduit::Destroy(module);
  return conduit::ResultSuccess;
}
