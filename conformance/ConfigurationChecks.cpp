#include <algorithm>
#include <cctype>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "conformance/Check.h"
#include "conformance/ModuleLists.h"
#include "conformance/SessionWitness.h"
#include "conformance/Verdict.h"
#include <conduit/Reaction.h>
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

constexpr const char* UnknownName = "No such name";

/// One of these suits most parameters: numbers, switches, formats, file names.
constexpr const char* CandidateValues[] = {"1",        "0", "true", "%Y-%m-%d", "conformance.log",
                                           "two words"};

std::string Quoted(const char* text) {
  return text != nullptr ? "\"" + std::string(text) + "\"" : "a null text";
}

void RequireValue(const LoadedModule& module, std::int32_t index, const std::string& name,
                  const std::string& expected, const std::string& moment) {
  const auto require = [&](const char* value, const char* operation) {
    if (value == nullptr || value != expected) {
      Fail(std::string(operation) + " gives " + Quoted(value) + " for " + name + " " + moment +
           " instead of " + Quoted(expected.c_str()));
    }
  };
  GuardedText value;
  RequireResult("GetParameter of " + name, ResultSuccess,
                module->GetParameter(name.c_str(), &value.text));
  value.RequireGuards("GetParameter");
  require(value.text, "GetParameter");

  require(ReadEntry(module, &IInputModule::GetParameterAt, index, "GetParameterAt").value,
          "GetParameterAt");
}

/// Sets a parameter from texts that do not outlive the call.
/// @returns whether the module took the value.
bool Set(const LoadedModule& module, std::string name, std::string value) {
  const std::string call = "SetParameter of " + name + " to " + Quoted(value.c_str());
  const std::int32_t result = module->SetParameter(name.data(), value.data());
  const bool isMissing = result == ResultValueMissing && value.empty();
  if (result != ResultSuccess && result != ResultInvalidValue && !isMissing) {
    Fail(call + " answered " + std::to_string(result) + ", which is no answer to that");
  }
  std::ranges::fill(name, '#');
  std::ranges::fill(value, '#');
  return result == ResultSuccess;
}

/// @returns the number of values that the module took.
int CheckValuesOf(const LoadedModule& module, std::int32_t index, const std::string& name) {
  RequireValue(module, index, name, "", "before it is set");
  int taken = 0;
  std::string present;
  for (const char* const candidate : CandidateValues) {
    if (Set(module, name, candidate)) {
      ++taken;
      present = candidate;
      RequireValue(module, index, name, present, "after it was set");
    } else {
      RequireValue(module, index, name, present, "after it refused " + Quoted(candidate));
    }
  }
  if (!Set(module, name, "")) {
    RequireValue(module, index, name, present, "after it refused the empty text");
  }
  return taken;
}

std::string WithOtherCase(std::string name) {
  for (char& letter : name) {
    const auto code = static_cast<unsigned char>(letter);
    letter = static_cast<char>(std::islower(code) ? std::toupper(code) : std::tolower(code));
  }
  return name;
}

/// Adds a condition that input modules have; skips the check for one that has
/// not. The texts do not outlive the call.
void AddReaction(const LoadedModule& module, std::string event) {
  std::string name = ConditionKind::ReceiveEvent;
  const std::int32_t result = module->AddCondition(name.data(), event.data());
  std::ranges::fill(name, '#');
  std::ranges::fill(event, '#');
  if (result == ResultUnknownCondition) {
    Skip("the module has no condition ReceiveEvent");
  }
  RequireResult("AddCondition of ReceiveEvent", ResultSuccess, result);
}

constexpr Check Checks[] = {
    {"parameter-list", "names are sorted and stable; an index out of range writes nothing",
     [](const CheckContext& context) {
       SessionWitness host;
       const LoadedModule module(context.library, &host);
       const std::int32_t count = module->GetParameterCount();
       if (count < 0) {
         Fail("GetParameterCount answered " + std::to_string(count));
       }
       RequireNothingWritten(module, &IInputModule::GetParameterAt, count, "GetParameterAt");

       std::optional<std::string> previous;
       std::vector<ListEntry> first;
       for (std::int32_t i = 0; i < count; ++i) {
         const ListEntry entry =
             ReadEntry(module, &IInputModule::GetParameterAt, i, "GetParameterAt");
         const std::string position = "the parameter at " + std::to_string(i);
         if (entry.name == nullptr || entry.value == nullptr) {
           Fail(position + " has no " + (entry.name != nullptr ? "value" : "name"));
         }
         if (previous && *previous >= entry.name) {
           Fail(position + ", " + Quoted(entry.name) + ", does not come after " +
                Quoted(previous->c_str()) + " in the byte order of the names");
         }
         previous = entry.name;
         first.push_back(entry);
       }

       const std::vector<std::string> names = ParameterNames(module);
       for (const std::string& name : names) {
         module->SetParameter(name.c_str(), CandidateValues[0]);
       }
       if (module->GetParameterCount() != count || ParameterNames(module) != names) {
         Fail("the names change when parameters are set");
       }
       for (std::size_t i = 0; i < names.size(); ++i) {
         if (first[i].name != names[i]) {
           Fail("the text of the name " + Quoted(names[i].c_str()) + " does not stay good");
         }
       }
     }},

    {"parameter-values", "empty until set; what is set is read back; a refusal changes nothing",
     [](const CheckContext& context) {
       SessionWitness host;
       const LoadedModule module(context.library, &host);
       const std::vector<std::string> names = ParameterNames(module);
       if (names.empty()) {
         Skip("the module has no parameters");
       }
       int taken = 0;
       for (std::size_t i = 0; i < names.size(); ++i) {
         taken += CheckValuesOf(module, static_cast<std::int32_t>(i), names[i]);
       }
       if (taken == 0) {
         Skip("no parameter takes any of the values that are tried");
       }
     }},

    {"parameter-texts", "what GetParameter gives stays good, and nothing beside it is written",
     [](const CheckContext& context) {
       SessionWitness host;
       const LoadedModule module(context.library, &host);
       const std::vector<std::string> names = ParameterNames(module);
       if (names.empty()) {
         Skip("the module has no parameters");
       }
       // Neighbours are given different values, so that a shared text shows.
       std::vector<std::string> expected(names.size());
       for (std::size_t i = 0; i < names.size(); ++i) {
         for (std::size_t k = 0; k < std::size(CandidateValues); ++k) {
           const char* const candidate = CandidateValues[(i + k) % std::size(CandidateValues)];
           if ((i == 0 || expected[i - 1] != candidate) && Set(module, names[i], candidate)) {
             expected[i] = candidate;
             break;
           }
         }
       }
       for (std::size_t i = 0; i < names.size(); ++i) {
         const char* value = nullptr;
         RequireResult("GetParameter of " + names[i], ResultSuccess,
                       module->GetParameter(names[i].c_str(), &value));
         for (const std::string& other : names) {
           const char* ignored = nullptr;
           module->GetParameter(other.c_str(), &ignored);
           module->GetParameter(UnknownName, &ignored);
         }
         if (value == nullptr || value != expected[i]) {
           Fail("what GetParameter gives for " + names[i] +
                " does not stay good while other parameters are read");
         }
       }
     }},

    {"unknown-parameter", "an unknown name is answered with 2",
     [](const CheckContext& context) {
       SessionWitness host;
       const LoadedModule module(context.library, &host);
       const std::vector<std::string> names = ParameterNames(module);
       std::vector<std::string> unknown = {UnknownName, ""};
       if (!names.empty()) {
         unknown.push_back(names[0] + " ");
         unknown.push_back(WithOtherCase(names[0]));
       }
       std::erase_if(unknown, [&](const std::string& name) {
         return std::ranges::find(names, name) != names.end();
       });
       for (const std::string& name : unknown) {
         RequireResult("SetParameter of the unknown name " + Quoted(name.c_str()),
                       ResultUnknownParameter, module->SetParameter(name.c_str(), "1"));
         GuardedText value;
         RequireResult("GetParameter of the unknown name " + Quoted(name.c_str()),
                       ResultUnknownParameter, module->GetParameter(name.c_str(), &value.text));
         value.RequireGuards("GetParameter");
         if (value.IsWritten()) {
           Fail("GetParameter writes " + Quoted(value.text) + " for the unknown name " +
                Quoted(name.c_str()));
         }
       }
       if (ParameterNames(module) != names) {
         Fail("an unknown name was added to the parameters");
       }
     }},

    {"unknown-condition", "an unknown condition name is answered with 3 and not added",
     [](const CheckContext& context) {
       SessionWitness host;
       const LoadedModule module(context.library, &host);
       for (const char* const name : {UnknownName, "", "receiveevent"}) {
         RequireResult("AddCondition of the unknown name " + Quoted(name), ResultUnknownCondition,
                       module->AddCondition(name, "DOC_ON_WINDOW"));
       }
       RequireResult("GetConditionCount after refused conditions", 0, module->GetConditionCount());
     }},

    {"unknown-action", "an unknown action name is answered with 4",
     [](const CheckContext& context) {
       SessionWitness host;
       const LoadedModule module(context.library, &host);
       AddReaction(module, "DOC_ON_WINDOW");
       for (const char* const name : {UnknownName, "", "setactivescript"}) {
         RequireResult(
             "AddAction of the unknown name " + Quoted(name), ResultUnknownAction,
             module->AddAction(ConditionKind::ReceiveEvent, "DOC_ON_WINDOW", name, "greet"));
       }
       RequireResult("AddAction to a condition that was not added", ResultUnknownCondition,
                     module->AddAction(ConditionKind::ReceiveEvent, "DOC_REMOVED",
                                       ActionKind::SetActiveScript, "greet"));
     }},

    {"condition-list", "conditions are listed in the order in which they were added",
     [](const CheckContext& context) {
       SessionWitness host;
       const LoadedModule module(context.library, &host);
       RequireNothingWritten(module, &IInputModule::GetConditionAt, 0, "GetConditionAt");

       // Neither sorted nor distinct: the list keeps what it is given.
       const std::vector<std::string> events = {"DOC_REMOVED", "DATA_READ", "DOC_REMOVED",
                                                "A",           "",          "Z"};
       AddReaction(module, events[0]);
       const ListEntry first =
           ReadEntry(module, &IInputModule::GetConditionAt, 0, "GetConditionAt");
       for (std::size_t i = 1; i < events.size(); ++i) {
         AddReaction(module, events[i]);
       }
       const std::int32_t count = module->GetConditionCount();
       RequireResult("GetConditionCount", static_cast<std::int32_t>(events.size()), count);
       for (std::int32_t i = 0; i < count; ++i) {
         const ListEntry entry =
             ReadEntry(module, &IInputModule::GetConditionAt, i, "GetConditionAt");
         const std::string& event = events[static_cast<std::size_t>(i)];
         if (entry.name == nullptr || entry.value == nullptr ||
             std::string(ConditionKind::ReceiveEvent) != entry.name || event != entry.value) {
           Fail("the condition at " + std::to_string(i) + " is " + Quoted(entry.name) + ", " +
                Quoted(entry.value) + " instead of \"ReceiveEvent\", " + Quoted(event.c_str()));
         }
       }
       if (std::string(ConditionKind::ReceiveEvent) != first.name || events[0] != first.value) {
         Fail("the texts of the first condition do not stay good when others are added");
       }
       RequireNothingWritten(module, &IInputModule::GetConditionAt, count, "GetConditionAt");
     }},
};

}  // namespace

std::span<const Check> ConfigurationChecks() { return Checks; }

}  // namespace conduit
