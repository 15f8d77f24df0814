#include "conformance/ModuleLists.h"

#include <limits>
#include <utility>

#include "conformance/Verdict.h"
#include <conduit/Reaction.h>

namespace conduit {

const char* const Unwritten = "not written";

void GuardedText::RequireGuards(const std::string& operation) const {
  for (const char* const guard : {before[0], before[1], after[0], after[1]}) {
    if (guard != Unwritten) {
      Fail(operation + " writes beside its out-parameter");
    }
  }
}

void RequireNothingWritten(const LoadedModule& module, ListReader read, std::int32_t count,
                           const std::string& operation) {
  GuardedText name;
  GuardedText value;
  const auto require = [&](const std::string& arguments) {
    if (name.IsWritten() || value.IsWritten()) {
      Fail(operation + " writes a result for " + arguments);
    }
    name.RequireGuards(operation);
    value.RequireGuards(operation);
  };
  for (const std::int32_t index : {-1, count, std::numeric_limits<std::int32_t>::max(),
                                   std::numeric_limits<std::int32_t>::min()}) {
    ((*module).*read)(index, &name.text, &value.text);
    require("index " + std::to_string(index) + " of " + std::to_string(count));
  }
  ((*module).*read)(0, &name.text, nullptr);
  ((*module).*read)(0, nullptr, &value.text);
  require("a null pointer beside it");
}

ListEntry ReadEntry(const LoadedModule& module, ListReader read, std::int32_t index,
                    const std::string& operation) {
  GuardedText name;
  GuardedText value;
  ((*module).*read)(index, &name.text, &value.text);
  name.RequireGuards(operation);
  value.RequireGuards(operation);
  return {name.IsWritten() ? name.text : nullptr, value.IsWritten() ? value.text : nullptr};
}

void Exercise(const LoadedModule& module) {
  module->SetParameter("No such name", "1");
  for (const std::string& name : ParameterNames(module)) {
    module->SetParameter(name.c_str(), "");
    module->SetParameter(name.c_str(), "1");
  }
  module->AddCondition("No such name", "1");
  module->AddCondition(ConditionKind::ReceiveEvent, "DOC_ON_WINDOW");
  module->AddAction(ConditionKind::ReceiveEvent, "DOC_ON_WINDOW", "No such name", "1");
  module->AddAction(ConditionKind::ReceiveEvent, "DOC_ON_WINDOW", ActionKind::SetActiveScript,
                    "greet");
}

std::vector<std::string> ParameterNames(const LoadedModule& module) {
  std::vector<std::string> names;
  for (ListedParameter& parameter : module.Parameters()) {
    names.push_back(std::move(parameter.name));
  }
  return names;
}

}  // namespace conduit
