#include <chrono>
#include <cstddef>
#include <string>
#include <thread>

#include "conformance/Check.h"
#include "conformance/ModuleLists.h"
#include "conformance/SessionWitness.h"
#include "conformance/Verdict.h"
#include "platform/ExportedNames.h"
#include "platform/MemoryInUse.h"
#include "platform/ProcessResources.h"
#include <conduit/Reaction.h>
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

constexpr Check Checks[] = {
    // That the two are there is known: the library would not have loaded.
    {"exports", "exports the two functions and no other names of its own",
     [](const CheckContext& context) {
       std::string others;
       for (const std::string& name : ExportedNames(context.module)) {
         if (name != "CIM_GetInputModule" && name != "CIM_Destroy") {
           others.append(others.empty() ? "" : ", ").append(name);
         }
       }
       if (!others.empty()) {
         Fail("also exports " + others);
       }
     }},

    {"null-arguments", "the exported functions answer 6 to null pointers",
     [](const CheckContext& context) {
       SessionWitness host;
       RequireResult("CIM_GetInputModule with a null result pointer", ResultNullPointer,
                     context.library.create(&host, nullptr));
       RequireResult("CIM_Destroy of null", ResultNullPointer, context.library.destroy(nullptr));
     }},

    {"null-texts", "a null text counts as the empty one, wherever a text is given",
     [](const CheckContext& context) {
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
       if (module->AddCondition(ConditionKind::ReceiveEvent, nullptr) == ResultSuccess) {
         requireSame("AddAction of the name",
                     module->AddAction(ConditionKind::ReceiveEvent, "", "", ""),
                     module->AddAction(ConditionKind::ReceiveEvent, nullptr, nullptr, nullptr));
       }
     }},

    {"null-logger", "works without a logger, through a session as well",
     [](const CheckContext& context) {
       SessionWitness host;
       const LoadedModule module(context.library, nullptr);
       Exercise(module);
       host.Start(module, context.missingSession, context.settings);
       module->Shutdown();
       host.Start(module, context.session, context.settings);
       host.WaitForEnd(context.patience);
       module->Shutdown();
     }},

    {"create-destroy", "5000 modules, created and destroyed, leave no memory behind",
     [](const CheckContext& context) {
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
     }},

    {"leaves-nothing", "modules that ran leave no thread, open file or process behind",
     [](const CheckContext& context) {
       constexpr int warmUp = 2;
       constexpr int rounds = 4;
       const auto repeat = [&](int count) {
         for (int i = 0; i < count; ++i) {
           SessionWitness host;
           const LoadedModule module(context.library, &host);
           Exercise(module);
           if (host.Start(module, context.manyDocuments, context.settings) == ResultSuccess) {
             host.WaitForDelivery(context.patience / (warmUp + rounds));
           }
           module->Shutdown();
         }
       };
       repeat(warmUp);
       const ProcessResources before = ResourcesInUse();
       repeat(rounds);
       const auto require = [&](const char* what, auto resource) {
         // Threads that have been told to end need a moment.
         constexpr std::chrono::milliseconds moment(20);
         constexpr int moments = 25;
         constexpr std::size_t each = rounds;
         std::size_t left = 0;
         for (int i = 0; i < moments; ++i) {
           left = ResourcesInUse().*resource;
           if (left < before.*resource + each) {
             return;
           }
           std::this_thread::sleep_for(moment);
         }
         Fail(std::to_string(rounds) + " modules left " + std::to_string(left - before.*resource) +
              " " + what + " behind");
       };
       require("threads", &ProcessResources::threads);
       require("open files", &ProcessResources::files);
     },
     [] {
       constexpr std::chrono::milliseconds moment(20);
       constexpr int moments = 25;
       std::size_t left = 0;
       for (int i = 0; i < moments; ++i) {
         left = ChildProcesses().size();
         if (left == 0) {
           return;
         }
         std::this_thread::sleep_for(moment);
       }
       Fail("left " + std::to_string(left) + (left == 1 ? " process" : " processes") +
            " behind when its library was unloaded");
     }},
};

}  // namespace

std::span<const Check> LibraryChecks() { return Checks; }

}  // namespace conduit
