#include <dlfcn.h>

#include <cstdio>
#include <semaphore>
#include <string_view>

#include <conduit/ModuleEntry.h>
#include <conduit/ResultCode.h>

using namespace conduit;

/// Takes what the module logs and delivers; the deliveries come on the reader's threads.
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
  const char* file = count == 2 ? arguments[1] : "";
  void* library = dlopen(file, RTLD_NOW);
  if (!library) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 2;
  }
  const auto create =
      reinterpret_cast<GetInputModuleFunction>(dlsym(library, "CIM_GetInputModule"));
  const auto destroy = reinterpret_cast<DestroyFunction>(dlsym(library, "CIM_Destroy"));

  Host host;  // outlives the module, which only borrows it
  IInputModule* module = nullptr;
  if (!create || !destroy || create(&host, &module) != ResultSuccess) {
    std::fprintf(stderr, "'%s' is no module; usage: host MODULE\n", file);
    return 2;
  }
  module->SetHost(&host);
  module->SetParameter("DateOfBirthFormat", "%d.%m.%Y");
  const bool started = module->Initialise() == ResultSuccess;
  if (started) {
    host.disconnected.acquire();
    module->Shutdown();  // no delivery is under way when it returns
  }
  destroy(module);
  return started ? 0 : 1;
}
