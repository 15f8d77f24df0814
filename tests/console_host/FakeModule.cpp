#include <chrono>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "platform/FilePath.h"
#include "platform/SessionLocation.h"
#include <conduit/Implements.h>
#include <conduit/ModuleEntry.h>
#include <conduit/ResultCode.h>

/// A module that plays the script in the file FAKE_MODULE_SCRIPT when it is started: one
/// call of the host a line, on a thread of its own as a reader's would be.

namespace conduit {
namespace {

std::string Script() {
  const char* const name = std::getenv("FAKE_MODULE_SCRIPT");
  std::ifstream file(name ? name : "", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string Bytes(const std::string& hexadecimal) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hexadecimal.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(hexadecimal.substr(i, 2), nullptr, 16));
  }
  return bytes;
}

/// Has its code in this library.
struct NoRoom : std::exception {
  const char* what() const noexcept override { return "no room"; }
};

class Properties : public Implements<IStringMap> {
 public:
  std::int32_t Count() override { return static_cast<std::int32_t>(entries.size()); }
  void Set(const char* key, const char* value) override { entries[key] = value; }
  const char* Get(const char* key) override {
    return entries.contains(key) ? entries[key].c_str() : nullptr;
  }
  void RemoveAll() override { entries.clear(); }
  void Remove(const char* key) override { entries.erase(key); }

 private:
  std::map<std::string, std::string> entries;
};

class FakeModule : public Implements<IInputModule> {
 public:
  explicit FakeModule(IModuleLogger* logger) : logger(logger) {
    logger->Log(3, "Fake::Fake", Utf8FromPath(SessionLocation()).c_str());
  }
  FakeModule(const FakeModule&) = delete;
  FakeModule& operator=(const FakeModule&) = delete;
  ~FakeModule() override { logger->Log(3, "Fake::~Fake", "destroyed"); }

  std::int32_t SetParameter(const char* name, const char* value) override {
    if (std::string(name) == "Format") {
      logger->Log(3, "Fake::SetParameter", ("Format = " + std::string(value)).c_str());
      return ResultSuccess;
    }
    if (std::string(name) == "LogFileName") {
      readerLog.open(value, std::ios::app);
      return ResultSuccess;
    }
    const bool known = std::string(name) == "Level";
    logger->Log(known ? 0 : 1, "Fake::SetParameter", known ? "Level is too high" : "never heard");
    return known ? ResultInvalidValue : ResultUnknownParameter;
  }
  std::int32_t GetParameter(const char* /*name*/, const char** /*value*/) override {
    return ResultUnknownParameter;
  }
  std::int32_t GetParameterCount() override {
    if (Script() == "throw") {
      throw std::runtime_error("it gave up");
    }
    return 3;
  }
  void GetParameterAt(std::int32_t index, const char** name, const char** value) override {
    constexpr const char* names[] = {"Format", "Level", "LogFileName"};
    *name = names[index];
    *value = "";
  }

  std::int32_t AddCondition(const char* /*name*/, const char* value) override {
    if (std::string(value) == "NO_SUCH_EVENT") {
      return ResultUnknownCondition;
    }
    ++conditions;
    return ResultSuccess;
  }
  std::int32_t AddAction(const char* /*name*/, const char* event, const char* /*action*/,
                         const char* script) override {
    scripts.emplace(event, script);
    return ResultSuccess;
  }
  std::int32_t GetConditionCount() override { return conditions; }
  void GetConditionAt(std::int32_t /*index*/, const char** /*name*/,
                      const char** /*value*/) override {}

  void SetHost(IInputModuleHost* newHost) override { host = newHost; }
  std::int32_t Initialise() override {
    const std::string script = Script();
    if (script.starts_with("refuse\n")) {
      Play(script);
      return ResultReaderNotStarted;
    }
    host->ReportState("Enabled");
    reader = std::thread([this, script] { Play(script); });
    return ResultSuccess;
  }
  std::int32_t Shutdown() override {
    if (reader.joinable()) {
      reader.join();
    }
    logger->Log(3, "Fake::Shutdown", "stopped");
    return ResultSuccess;
  }

 private:
  void Play(const std::string& script) {
    std::istringstream lines(script);
    for (std::string line; std::getline(lines, line);) {
      PlayLine(line);
    }
  }

  void PlayLine(const std::string& line) {
    std::istringstream words(line);
    std::string verb;
    std::string first;
    words >> verb >> first;
    const std::string rest = line.size() > verb.size() ? line.substr(verb.size() + 1) : "";

    while (verb == "hang") {
      std::this_thread::sleep_for(std::chrono::seconds(1));
    }
    if (verb == "begin") {
      host->BeginData();
    }
    if (verb == "end") {
      host->EndData();
    }
    if (verb == "state") {
      host->ReportState(rest.c_str());
    }
    if (verb == "error") {
      host->ReportError(rest.c_str());
    }
    if (verb == "log") {
      logger->Log(std::stoi(first), "Fake::Play", rest.substr(2).c_str());
    }
    if (verb == "reader") {
      readerLog << rest << std::endl;
    }
    if (verb == "conditions") {
      host->ReportState(std::to_string(conditions).c_str());
    }
    if (verb == "event") {
      PlayEvent(rest);
    }
    if (verb == "ask") {
      const std::int32_t answer = host->SendData(first.c_str(), 4, 1, "?", nullptr, true);
      host->ReportState(("answered " + std::to_string(answer)).c_str());
    }
    if (verb == "item") {
      PlayItem(first, words);
    }
    if (verb == "missing") {
      host->SendData(first.c_str(), 5, 12, nullptr, nullptr, true);
    }
    if (verb == "nulls") {
      PlayNulls();
    }
    if (verb == "storm") {
      PlayStorm();
    }
  }

  void PlayEvent(const std::string& name) {
    host->ReportError("");
    const auto [begin, end] = scripts.equal_range(name);
    for (auto script = begin; script != end; ++script) {
      host->SetActiveScript(script->second.c_str());
    }
    host->SendEvent(name.c_str());
  }

  /// item NAME TYPE HEXADECIMAL [FEATURE more|last]
  void PlayItem(const std::string& name, std::istringstream& words) {
    ItemType type = 0;
    std::string data;
    std::string feature;
    std::string last;
    words >> type >> data >> feature >> last;
    data = Bytes(data);
    Properties properties;
    properties.Set("feature", feature.c_str());
    host->SendData(name.c_str(), type, static_cast<std::int32_t>(data.size()), data.data(),
                   feature.empty() ? nullptr : &properties, last != "more");
  }

  void PlayNulls() {
    logger->Log(0, nullptr, nullptr);
    host->SendEvent(nullptr);
    host->ReportState(nullptr);
    host->ReportError(nullptr);
    host->SetActiveScript(nullptr);
    host->SendData(nullptr, 4, -1, nullptr, nullptr, true);
  }

  void PlayStorm() {
    std::vector<std::thread> threads;
    for (const char* text : {"aaaaaaaa", "bbbbbbbb", "cccccccc", "dddddddd"}) {
      threads.emplace_back([this, text] {
        for (int i = 0; i < 200; ++i) {
          host->SendData(text, 4, 8, text, nullptr, true);
        }
      });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
  }

  IModuleLogger* const logger;
  IInputModuleHost* host = nullptr;
  std::int32_t conditions = 0;
  std::multimap<std::string, std::string> scripts;
  std::ofstream readerLog;
  std::thread reader;
};

}  // namespace
}  // namespace conduit

std::int32_t CIM_GetInputModule(conduit::IModuleLogger* logger, conduit::IInputModule** module) {
  const std::string script = conduit::Script();
  if (script == "no memory") {
    return 6;
  }
  if (script == "no room") {
    throw conduit::NoRoom();
  }
  *module = script == "no module" ? nullptr : new conduit::FakeModule(logger);
  return conduit::ResultSuccess;
}

std::int32_t CIM_Destroy(conduit::IInputModule* module) {
  conduit::Destroy(module);
  return conduit::ResultSuccess;
}
