#pragma once

#include <conduit/HaldenReaderHighLevelAPI.h>
#include <conduit/Implements.h>
#include <conduit/ModuleEntry.h>

namespace conduit {

/// The base of both reference implementations: the operations that no workload calls, and
/// the dispatch of the reader's callbacks to the object.
template <class Implementation>
class ComparedModule : public Implements<IInputModule> {
 public:
  explicit ComparedModule(IModuleLogger* logger) : logger(logger) {}
  ComparedModule(const ComparedModule&) = delete;
  ComparedModule& operator=(const ComparedModule&) = delete;
  ~ComparedModule() override = default;

  void SetHost(IInputModuleHost* newHost) override { host = newHost; }
  std::int32_t Shutdown() override {
    HaldenReader_Shutdown();
    return 0;
  }
  std::int32_t GetParameterCount() override { return 0; }
  void GetParameterAt(std::int32_t, const char**, const char**) override {}
  std::int32_t GetConditionCount() override { return 0; }
  void GetConditionAt(std::int32_t, const char**, const char**) override {}

 protected:
  std::int32_t StartReader(std::int32_t level, const char* file) {
    HaldenReader_EnableLogging(true, level, -1, file);
    return HaldenReader_Initialise(
        [](void* context, ReaderDataType type, std::int32_t length, void* data) {
          static_cast<Implementation*>(context)->OnData(type, length, data);
        },
        [](void* context, ReaderEventCode code) {
          static_cast<Implementation*>(context)->OnEvent(code);
        },
        [](void*, const ReaderErrorInfo*, void*) {}, nullptr, false, false,
        static_cast<Implementation*>(this));
  }

  IModuleLogger* logger;
  IInputModuleHost* host = nullptr;
};

}  // namespace conduit
