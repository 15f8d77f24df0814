#include <cstdio>
#include <semaphore>
#include <string_view>

#include <conduit/ResultCode.h>
#include <conduit/hosting/LoadedModule.h>

using namespace conduit;

/// Prints what the module logs and delivers. Deliveries come on the reader's threads.
class Host final : public IModuleLogger, public IInputModuleHost {
 public:
  virtual ~Host() = default;

  void Log(std::int32_t level, const char* tag, const char* message) override {
    if (level == 0) {
      std::fprintf(stderr, "%s: %s\n", tag, message);
    }
  }
  std::int32_t SendData(const char* name, ItemType type, std::int32_t length, const void* data,
                        IStringMap* /*properties*/, bool /*last*/) override {
    const int shown = type == ItemTypeText && data ? length : 0;  // a barcode's text has no NUL
    std::printf("  %s (%d bytes) %.*s\n", name, length, shown, static_cast<const char*>(data));
    return 0;
  }
  void SendEvent(const char* name) override {
    std::printf("event %s\n", name);
    if (name == std::string_view("DEVICE_DISCONNECTED")) {
      disconnected.release();
    }
  }
  void BeginData() override { std::printf("document\n"); }
  void EndData() override { std::printf("end\n"); }
  std::int32_t SetActiveScript(const char* /*name*/) override { return ResultSuccess; }
  void ReportState(const char* text) override { std::printf("state %s\n", text); }
  void ReportError(const char* text) override { std::printf("error %s\n", text); }

  std::counting_semaphore<> disconnected{0};
};

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: sample_host MODULE\n");
    return 2;
  }
  Host host;  // outlives the module, which only borrows it
  try {
    const LoadedModule module(arguments[1], &host);
    module->SetHost(&host);
    module->SetParameter("DateOfBirthFormat", "%d.%m.%Y");
    if (module->Initialise() != ResultSuccess) {
      return 1;
    }
    host.disconnected.acquire();
    module->Shutdown();  // when it returns, no delivery is running
    return 0;
  } catch (const ModuleError& problem) {
    std::fprintf(stderr, "%s\n", problem.what());
    return 2;
  }
}
