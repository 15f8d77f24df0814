#include "hosting/ModuleRun.h"

#include <new>
#include <stdexcept>

#include "hosting/ResultMeaning.h"
#include "hosting/Utf8.h"
#include "platform/Environment.h"
#include "platform/FilePath.h"
#include "platform/SessionLocation.h"
#include <conduit/ResultCode.h>

namespace conduit {

ModuleRun::ModuleRun(const ModuleLibrary& library, ModuleHost& host)
    : module(library, &host), host(host) {
  module->SetHost(&host);
}

ModuleRun::~ModuleRun() {
  if (running) {
    module->Shutdown();
  }
}

void ModuleRun::UseSession(const std::filesystem::path& session, bool watched) {
  RequireReadable("session", session);
  if (watched && !std::filesystem::is_directory(session)) {
    throw std::runtime_error("cannot watch " + EscapedPaths(Utf8FromPath(session)) +
                             ": it is no folder");
  }
  SetEnvironment(SessionVariable,
                 watched ? std::filesystem::path(WatchPrefix) += session : session);
}

std::int32_t ModuleRun::SetParameter(const std::string& name, const std::string& value,
                                     const std::string& shown) {
  return host.Call("SetParameter " + name + "=" + value, "the module refuses " + shown,
                   [&] { return module->SetParameter(name.c_str(), value.c_str()); });
}

std::int32_t ModuleRun::Start() {
  const std::int32_t result =
      host.Call("Initialise", "the reader did not start", [this] { return module->Initialise(); });
  running = result == ResultSuccess;
  return result;
}

std::int32_t ModuleRun::Stop(const std::function<void()>& stopped) {
  // Whatever it answers: nobody is to wait for it any more.
  running = false;
  bool called = false;
  const auto stop = [&] {
    called = true;
    const std::int32_t result = module->Shutdown();
    stopped();
    return result;
  };
  try {
    return host.Call("Shutdown", "the reader did not stop", std::ref(stop));
  } catch (const std::bad_alloc&) {
    if (!called) {
      stop();
    }
    throw;
  }
}

std::string FailureText(const CallReturned& call) {
  std::string text = call.failure + " (" + ExplainedResult(call.result) + ")";
  for (const std::string& reason : call.reasons) {
    text += "\n  " + EscapedPaths(reason);
  }
  return text;
}

}  // namespace conduit
