#include <cctype>
#include <string>
#include <vector>

#include "conformance/Check.h"
#include "conformance/ModuleLists.h"
#include "conformance/SessionWitness.h"
#include "conformance/Verdict.h"
#include "interfaces/ResultCode.h"

namespace conduit {

namespace {

constexpr const char* UnknownName = "No such name";

/// One of these suits most parameters: numbers, switches, formats, file names.
constexpr const char* CandidateValues[] = {"1",        "0", "true", "%Y-%m-%d", "conformance.log",
                                           "two words"};

std::string Quoted(const char* text) {
  return text ? "\"" + std::string(text) + "\"" : "a null text";
}

void RequireValue(const LoadedModule& module, std::int32_t index, const std::string& name,
                  const std::string& expected, const std::string& moment) {
  const auto require = [&](const char* value, const char* operation) {
    if (!value || value != expected) {
      Fail(std::string(operation) + " gives " + Quoted(value) + " for " + name + " " + moment +
           " instead of " + Quoted(expected.c_str()));
    }
  };
  const char* value = nullptr;
  RequireResult("GetParameter of " + name, ResultSuccess,
                module->GetParameter(name.c_str(), &value));
  require(value, "GetParameter");

  ListEntry listed;
  module->GetParameterAt(index, &listed.name, &listed.value);
  require(listed.value, "GetParameterAt");
}

/// @returns the number of values that the module took.
int CheckValuesOf(const LoadedModule& module, std::int32_t index, const std::string& name) {
  RequireValue(module, index, name, "", "before it is set");
  int taken = 0;
  std::string present;
  for (const char* const candidate : CandidateValues) {
    if (module->SetParameter(name.c_str(), candidate) == ResultSuccess) {
      ++taken;
      present = candidate;
      RequireValue(module, index, name, present, "after it was set");
    } else {
      RequireValue(module, index, name, present, "after it refused " + Quoted(candidate));
    }
  }
  if (module->SetParameter(name.c_str(), "") != ResultSuccess) {
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
/// not.
void AddReaction(const LoadedModule& module, const char* event) {
  const std::int32_t result = module->AddCondition("ReceiveEvent", event);
  if (result == ResultUnknownCondition) {
    Skip("the module has no condition ReceiveEvent");
  }
  RequireResult("AddCondition of ReceiveEvent", ResultSuccess, result);
}

}  // namespace

void CheckParameterList(const CheckContext& context) {
  SessionWitness host;
  const LoadedModule module(context.library, &host);
  const std::int32_t count = module->GetParameterCount();
  if (count < 0) {
    Fail("GetParameterCount answered " + std::to_string(count));
  }
  RequireNothingWritten(module, &IInputModule::GetParameterAt, count, "GetParameterAt");

  std::string previous;
  std::vector<ListEntry> first;
  for (std::int32_t i = 0; i < count; ++i) {
    ListEntry entry;
    module->GetParameterAt(i, &entry.name, &entry.value);
    const std::string position = "the parameter at " + std::to_string(i);
    if (!entry.name || !entry.value) {
      Fail(position + " has no " + (entry.name ? "value" : "name"));
    }
    if (previous >= entry.name) {
      Fail(position + ", " + Quoted(entry.name) + ", does not come after " +
           Quoted(previous.c_str()) + " in the byte order of the names");
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
}

void CheckParameterValues(const CheckContext& context) {
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
}

void CheckUnknownParameter(const CheckContext& context) {
  SessionWitness host;
  const LoadedModule module(context.library, &host);
  const std::vector<std::string> names = ParameterNames(module);
  std::vector<std::string> unknown = {UnknownName, ""};
  if (!names.empty()) {
    unknown.push_back(names[0] + " ");
    unknown.push_back(WithOtherCase(names[0]));
  }
  for (const std::string& name : unknown) {
    RequireResult("SetParameter of the unknown name " + Quoted(name.c_str()),
                  ResultUnknownParameter, module->SetParameter(name.c_str(), "1"));
    const char* value = nullptr;
    RequireResult("GetParameter of the unknown name " + Quoted(name.c_str()),
                  ResultUnknownParameter, module->GetParameter(name.c_str(), &value));
    if (value) {
      Fail("GetParameter writes a value for the unknown name " + Quoted(name.c_str()));
    }
  }
  if (ParameterNames(module) != names) {
    Fail("an unknown name was added to the parameters");
  }
}

void CheckUnknownCondition(const CheckContext& context) {
  SessionWitness host;
  const LoadedModule module(context.library, &host);
  for (const char* const name : {UnknownName, "", "receiveevent"}) {
    RequireResult("AddCondition of the unknown name " + Quoted(name), ResultUnknownCondition,
                  module->AddCondition(name, "DOC_ON_WINDOW"));
  }
  RequireResult("GetConditionCount after refused conditions", 0, module->GetConditionCount());
}

void CheckUnknownAction(const CheckContext& context) {
  SessionWitness host;
  const LoadedModule module(context.library, &host);
  AddReaction(module, "DOC_ON_WINDOW");
  for (const char* const name : {UnknownName, "", "setactivescript"}) {
    RequireResult("AddAction of the unknown name " + Quoted(name), ResultUnknownAction,
                  module->AddAction("ReceiveEvent", "DOC_ON_WINDOW", name, "greet"));
  }
  RequireResult("AddAction to a condition that was not added", ResultUnknownCondition,
                module->AddAction("ReceiveEvent", "DOC_REMOVED", "SetActiveScript", "greet"));
}

void CheckConditionList(const CheckContext& context) {
  SessionWitness host;
  const LoadedModule module(context.library, &host);
  RequireNothingWritten(module, &IInputModule::GetConditionAt, 0, "GetConditionAt");

  // Neither sorted nor distinct: the list keeps what it is given.
  const std::vector<std::string> events = {"DOC_REMOVED", "DATA_READ", "DOC_REMOVED", "A", "", "Z"};
  for (const std::string& event : events) {
    AddReaction(module, event.c_str());
  }
  const std::int32_t count = module->GetConditionCount();
  RequireResult("GetConditionCount", static_cast<std::int32_t>(events.size()), count);
  for (std::int32_t i = 0; i < count; ++i) {
    ListEntry entry;
    module->GetConditionAt(i, &entry.name, &entry.value);
    const std::string& event = events[static_cast<std::size_t>(i)];
    if (!entry.name || !entry.value || std::string("ReceiveEvent") != entry.name ||
        event != entry.value) {
      Fail("the condition at " + std::to_string(i) + " is " + Quoted(entry.name) + ", " +
           Quoted(entry.value) + " instead of \"ReceiveEvent\", " + Quoted(event.c_str()));
    }
  }
  RequireNothingWritten(module, &IInputModule::GetConditionAt, count, "GetConditionAt");
}

}  // namespace conduit
