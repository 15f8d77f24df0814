#include <cstddef>
#include <string>

#include "conformance/Check.h"
#include "conformance/ModuleLists.h"
#include "conformance/SessionWitness.h"
#include "conformance/Verdict.h"
#include "interfaces/ResultCode.h"
#include "platform/ExportedNames.h"
#include "platform/MemoryInUse.h"

namespace conduit {

namespace {

constexpr const char* UnknownName = "No such name";

/// What a module does often in its life, each of it with something to log.
void Exercise(const LoadedModule& module) {
  module->SetParameter(UnknownName, "1");
  for (const std::string& name : ParameterNames(module)) {
    module->SetParameter(name.c_str(), "");
    module->SetParameter(name.c_str(), "1");
  }
  module->AddCondition(UnknownName, "1");
  module->AddCondition("ReceiveEvent", "DOC_ON_WINDOW");
  module->AddAction("ReceiveEvent", "DOC_ON_WINDOW", UnknownName, "1");
  module->AddAction("ReceiveEvent", "DOC_ON_WINDOW", "SetActiveScript", "greet");
}

}  // namespace

/// That the two are there is known: the library would not have loaded.
void CheckExports(const CheckContext& context) {
  std::string others;
  for (const std::string& name : ExportedNames(context.module)) {
    if (name != "CIM_GetInputModule" && name != "CIM_Destroy") {
      others.append(others.empty() ? "" : ", ").append(name);
    }
  }
  if (!others.empty()) {
    Fail("also exports " + others);
  }
}

void CheckNullArguments(const CheckContext& context) {
  SessionWitness host;
  RequireResult("CIM_GetInputModule with a null result pointer", ResultNullPointer,
                context.library.create(&host, nullptr));
  RequireResult("CIM_Destroy of null", ResultNullPointer, context.library.destroy(nullptr));
}

void CheckNullTexts(const CheckContext& context) {
  SessionWitness host;
  const LoadedModule module(context.library, &host);
  module->SetHost(nullptr);
  const auto requireSame = [](const std::string& call, std::int32_t empty, std::int32_t null) {
    RequireResult(call + " null, unlike the empty text,", empty, null);
  };
  requireSame("SetParameter of the name", module->SetParameter("", ""),
              module->SetParameter(nullptr, nullptr));
  const char* value = nullptr;
  requireSame("GetParameter of the name", module->GetParameter("", &value),
              module->GetParameter(nullptr, &value));
  for (const std::string& name : ParameterNames(module)) {
    requireSame("SetParameter of " + name + " to", module->SetParameter(name.c_str(), ""),
                module->SetParameter(name.c_str(), nullptr));
  }
  requireSame("AddCondition of the name", module->AddCondition("", ""),
              module->AddCondition(nullptr, nullptr));
  requireSame("AddAction to the condition", module->AddAction("", "", "", ""),
              module->AddAction(nullptr, nullptr, nullptr, nullptr));
  if (module->AddCondition("ReceiveEvent", nullptr) == ResultSuccess) {
    requireSame("AddAction of the name", module->AddAction("ReceiveEvent", "", "", ""),
                module->AddAction("ReceiveEvent", nullptr, nullptr, nullptr));
  }
}

void CheckNullLogger(const CheckContext& context) {
  SessionWitness host;
  const LoadedModule module(context.library, nullptr);
  Exercise(module);
  host.Start(module, context.missingSession);
  module->Shutdown();
  host.Start(module, context.session);
  host.WaitForEnd(context.patience);
  module->Shutdown();
}

void CheckCreateDestroy(const CheckContext& context) {
  constexpr int warmUp = 500;  // what a process allocates once is no growth
  constexpr int rounds = 5000;
  constexpr std::size_t tolerance = 65536;  // the smallest leak per module makes twice as much

  SessionWitness host;
  const auto repeat = [&](int count) {
    for (int i = 0; i < count; ++i) {
      const LoadedModule module(context.library, &host);
      Exercise(module);
    }
  };
  repeat(warmUp);
  const std::size_t before = MemoryInUse();
  repeat(rounds);
  const std::size_t after = MemoryInUse();
  if (after > before + tolerance) {
    Fail(std::to_string(rounds) + " modules left " + std::to_string(after - before) +
         " bytes behind");
  }
}

}  // namespace conduit
