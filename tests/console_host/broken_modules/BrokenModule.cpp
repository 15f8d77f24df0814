#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tests/console_host/broken_modules/Fault.h"
#include "tests/console_host/broken_modules/IdleProcess.h"
#include <conduit/Implements.h>
#include <conduit/ModuleEntry.h>
#include <conduit/ResultCode.h>

/// A small module with a reader of its own that follows the interface, except
/// for the one fault that it is linked with.

namespace conduit {
namespace {

bool Has(Fault fault) { return fault == TheFault; }

/// The position of a barcode; nothing else is asked for.
class Feature final : public Implements<IStringMap> {
 public:
  explicit Feature(int position) : text(std::to_string(position)) {}
  std::int32_t Count() override { return 1; }
  void Set(const char* /*key*/, const char* value) override { text = value; }
  const char* Get(const char* key) override {
    return std::string("feature") == key && !Has(Fault::OmitsFeature) ? text.c_str() : nullptr;
  }
  void RemoveAll() override {}
  void Remove(const char* /*key*/) override {}

 private:
  std::string text;
};

class BrokenModule final : public Implements<IInputModule> {
 public:
  explicit BrokenModule(IModuleLogger* logger) : logger(logger) {}
  BrokenModule(const BrokenModule&) = delete;
  BrokenModule& operator=(const BrokenModule&) = delete;
  ~BrokenModule() override {
    if (Has(Fault::LeaksModule)) {
      Leak(1);
    }
  }

  std::int32_t SetParameter(const char* name, const char* value) override {
    const auto parameter = Find(name);
    if (parameter == parameters.end()) {
      Log("no such parameter");
      return ResultUnknownParameter;
    }
    const std::string text = Text(value);
    const bool isRefused = text.empty() || text == "0";
    if (!isRefused || Has(Fault::KeepsRefusedValue)) {
      parameter->second = Has(Fault::ChangesValue) && text == "two words" ? "two" : text;
      lent = value;
    }
    if (Has(Fault::RenamesParameters)) {
      name1 = "Other";
    }
    const ResultCode refusal =
        Has(Fault::RefusesWithOtherCode) ? ResultUnknownAction : ResultInvalidValue;
    return isRefused ? refusal : ResultSuccess;
  }

  std::int32_t GetParameter(const char* name, const char** value) override {
    const auto parameter = Find(name);
    if (parameter == parameters.end()) {
      if (Has(Fault::WritesNullForUnknown)) {
        *value = nullptr;
      }
      return ResultUnknownParameter;
    }
    if (Has(Fault::WritesBesideResult)) {
      value[1] = nullptr;
    }
    shared = parameter->second;
    *value = Has(Fault::LendsOneText) ? shared.c_str() : parameter->second.c_str();
    if (Has(Fault::KeepsLentValue) && !shared.empty()) {
      *value = lent;
    }
    return ResultSuccess;
  }

  std::int32_t GetParameterCount() override { return 2; }

  void GetParameterAt(std::int32_t index, const char** name, const char** value) override {
    const bool outside = index < 0 || index >= 2;
    if (!name || !value || (outside && !Has(Fault::ListsPastTheEnd))) {
      return;
    }
    const bool first = (index == 0) != Has(Fault::ListsUnsorted);
    *name = first ? name1 : "Zoom";
    *value = parameters[first ? "Port" : "Zoom"].c_str();
  }

  std::int32_t AddCondition(const char* name, const char* value) override {
    if (Text(name) != "ReceiveEvent" && !Has(Fault::TakesAnyCondition)) {
      return ResultUnknownCondition;
    }
    if (Has(Fault::LeaksCondition)) {
      Leak(100);
    }
    conditions.push_back({Text(name), Text(value), {}});
    return ResultSuccess;
  }

  std::int32_t AddAction(const char* conditionName, const char* conditionValue,
                         const char* actionName, const char* actionValue) override {
    for (Condition& condition : conditions) {
      if (condition.name != Text(conditionName) || condition.value != Text(conditionValue)) {
        continue;
      }
      if (Text(actionName) != "SetActiveScript" && !Has(Fault::TakesAnyAction)) {
        return ResultUnknownAction;
      }
      const bool front = Has(Fault::SwapsActions);
      condition.scripts.insert(front ? condition.scripts.begin() : condition.scripts.end(),
                               Text(actionValue));
      return ResultSuccess;
    }
    return ResultUnknownCondition;
  }

  std::int32_t GetConditionCount() override { return static_cast<std::int32_t>(conditions.size()); }

  void GetConditionAt(std::int32_t index, const char** name, const char** value) override {
    const auto count = static_cast<std::int32_t>(conditions.size());
    if (Has(Fault::ListsPastTheEndOfConditions) && index == count && name) {
      *name = "";
    }
    if (!name || !value || index < 0 || index >= count) {
      return;
    }
    const std::int32_t at = Has(Fault::ListsBackwards) ? count - 1 - index : index;
    *name = conditions[static_cast<std::size_t>(at)].name.c_str();
    shared = conditions[static_cast<std::size_t>(at)].value;
    *value = Has(Fault::LendsConditionText)
                 ? shared.c_str()
                 : conditions[static_cast<std::size_t>(at)].value.c_str();
  }

  void SetHost(IInputModuleHost* newHost) override { host = newHost; }

  std::int32_t Initialise() override {
    const char* session = std::getenv("HALDEN_READER_SESSION");
    std::FILE* const file = session ? std::fopen(session, "rb") : nullptr;
    const bool plays = file != nullptr;
    if (file) {
      std::fclose(file);
    }
    if (!Has(Fault::ForgetsStateOfStart)) {
      host->ReportState(plays ? "Enabled" : "Not Initialised");
    }
    if (!plays || (Has(Fault::StaysRefused) && refused) ||
        (Has(Fault::StartsOnce) && shutdowns > 0)) {
      refused = true;
      Log("the reader did not start");
      return Has(Fault::HidesRefusal) ? ResultSuccess : ResultReaderNotStarted;
    }
    LeakOfTheSystem(session);
    if (!Has(Fault::StaysSilent)) {
      playing = true;
      reader = std::thread([this] {
        Play();
        playing = false;
      });
    }
    return ResultSuccess;
  }

  std::int32_t Shutdown() override {
    ++shutdowns;
    if (Has(Fault::EndsTheProcess) && shutdowns > 1 && !reader.joinable()) {
      std::exit(0);
    }
    while (Has(Fault::HangsInSecondShutdown) && shutdowns > 1 && !reader.joinable()) {
      std::this_thread::sleep_for(std::chrono::seconds(1));
    }
    const bool isReader = reader.get_id() == std::this_thread::get_id();
    while (Has(Fault::DeadlocksInDelivery) && isReader && playing) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    std::unique_lock lock(mutex, std::defer_lock);
    if (Has(Fault::DeadlocksDuringDelivery) && !isReader) {
      lock.lock();
    }
    if (reader.joinable() && !isReader) {
      reader.join();
    }
    return ResultSuccess;
  }

 private:
  struct Condition {
    std::string name;
    std::string value;
    std::vector<std::string> scripts;
  };

  static void Leak(std::size_t size) {
    static std::vector<std::string> kept;
    kept.emplace_back(size, ' ');
  }

  static void LeakOfTheSystem(const char* session) {
    if (Has(Fault::LeaksThread)) {
      std::thread([] { std::this_thread::sleep_for(std::chrono::hours(1)); }).detach();
    }
    if (Has(Fault::LeaksFile)) {
      static std::vector<std::FILE*> kept;
      kept.push_back(std::fopen(session, "rb"));
    }
    // Once: only what outlives the library is too much.
    static bool started = false;
    if (Has(Fault::LeaksProcess) && !started) {
      started = true;
      StartIdleProcess();
    }
  }

  static std::string Text(const char* text) {
    return Has(Fault::ReadsNullText) || text ? std::string(text, std::strlen(text)) : "";
  }

  std::map<std::string, std::string>::iterator Find(const char* name) {
    std::string text = Text(name);
    if (Has(Fault::TakesAnyCase) && text == "pORT") {
      text = "Port";
    }
    if (Has(Fault::ThrowsOnUnknownParameter) && text == "Port ") {
      parameters.at(text);
    }
    return parameters.find(text);
  }

  void Log(const char* message) const {
    if (logger || Has(Fault::NeedsLogger)) {
      logger->Log(0, "BrokenModule", Has(Fault::NullLogMessage) ? nullptr : message);
    }
  }

  void SendEvent(const char* name) {
    if (!Has(Fault::ForgetsErrorOfEvent)) {
      host->ReportError("");
    }
    for (const Condition& condition : conditions) {
      for (const std::string& script : condition.scripts) {
        if (condition.value == name && !Has(Fault::ForgetsActions) &&
            host->SetActiveScript(script.c_str()) != 0 && !Has(Fault::IgnoresRefusedScript)) {
          break;
        }
      }
    }
    host->SendEvent(name);
    if (!Has(Fault::ForgetsStateOfEvent)) {
      host->ReportState("Reading");
    }
  }

  void SendBarcode(const char* name, int position, bool last) {
    Feature feature(position + (Has(Fault::NumbersFromOne) ? 1 : 0));
    host->SendData(name, Has(Fault::UnknownItemType) ? 6 : ItemTypeText, 4, "CODE", &feature,
                   last && !Has(Fault::MarksNoLast));
  }

  void Play() {
    constexpr char image[] = "\x89PNG\r\n\x1a\n....IEND\xAE\x42\x60\x82";
    const std::int32_t imageLength = Has(Fault::LengthBeyondData)
                                         ? 1 << 30
                                         : sizeof image - 1 - (Has(Fault::CutsTheImage) ? 1 : 0);
    SendEvent("DEVICE_CONNECTED");
    if (Has(Fault::CallsReserved)) {
      host->Reserved2();
    }
    if (Has(Fault::LeaksDocument)) {
      Leak(1 << 20);
    }
    if (Has(Fault::ForgetsBegin)) {
      SendEvent("START_OF_DOCUMENT_DATA");
    } else if (!Has(Fault::BeginsLate)) {
      host->BeginData();
    }
    host->SendData(Has(Fault::NamesInLowerCase) ? "Codeline" : "CODELINE", ItemTypeText,
                   Has(Fault::CountsTheNul) ? 5 : 4, "TEXT", nullptr, true);
    host->SendData(Has(Fault::NullName) ? nullptr : "IMAGEVIS", ItemTypeImage, imageLength, image,
                   nullptr, true);
    if (Has(Fault::BeginsLate)) {
      host->BeginData();
    }
    SendBarcode("BARCODE_PDF417", 0, false);
    SendBarcode("BARCODE_QRCODE", 1, true);
    if (Has(Fault::DeadlocksDuringDelivery)) {
      const std::lock_guard lock(mutex);
    }
    if (!Has(Fault::LeavesDocumentOpen)) {
      host->EndData();
    }
    if (Has(Fault::EndsDocumentTwice)) {
      host->EndData();
    }
    if (Has(Fault::DeliversAfterShutdown)) {
      std::thread([host = host] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        host->ReportError("");
      }).detach();
    }
    SendEvent("DEVICE_DISCONNECTED");
    host->ReportState("Terminated");
  }

  IModuleLogger* const logger;
  IInputModuleHost* host = nullptr;
  const char* name1 = "Port";
  std::map<std::string, std::string> parameters = {{"Port", Has(Fault::GivesDefaults) ? "1" : ""},
                                                   {"Zoom", ""}};
  std::deque<Condition> conditions;
  bool refused = false;
  int shutdowns = 0;
  std::atomic<bool> playing = false;
  std::mutex mutex;
  std::string shared;
  const char* lent = nullptr;
  std::thread reader;
};

}  // namespace

}  // namespace conduit

std::int32_t CIM_GetInputModule(conduit::IModuleLogger* logger, conduit::IInputModule** module) {
  if (!module) {
    return conduit::Has(conduit::Fault::IgnoresNullResult) ? conduit::ResultSuccess
                                                           : conduit::ResultNullPointer;
  }
  *module = new conduit::BrokenModule(logger);
  return conduit::ResultSuccess;
}

std::int32_t CIM_Destroy(conduit::IInputModule* module) {
  if (!module && !conduit::Has(conduit::Fault::DestroysNull)) {
    return conduit::ResultNullPointer;
  }
  conduit::Destroy(module);
  return conduit::ResultSuccess;
}
