#include "console_host/commands/DescribeCommand.h"

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "console_host/TextParts.h"
#include "console_host/WriteOut.h"
#include "hosting/HostRecorder.h"
#include "hosting/LoadedModule.h"
#include "hosting/Utf8.h"
#include "platform/FilePath.h"
#include "platform/Terminal.h"
#include <conduit/Reaction.h>
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

constexpr const char* Examples = R"(
Examples:
  conduit describe ./MyModule.so
      its parameters, and which conditions and actions it takes
  conduit describe ./MyModule.so --condition SessionEnds --action PlaySound
      also tries names of your own
  conduit describe ./MyModule.so --json
      gives programs one JSON object

Exit status: 0 described; 1 the module cannot be loaded; 2 wrong usage.)";

/// A module does not list the names that it takes, so these are tried.
constexpr const char* KnownCondition = ConditionKind::ReceiveEvent;
constexpr const char* KnownAction = ActionKind::SetActiveScript;
constexpr const char* AnyValue = "DOC_ON_WINDOW";

constexpr const char* UnknownName = "No such name";

struct DescribeOptions {
  std::string module;
  std::vector<std::string> conditions;
  std::vector<std::string> actions;
  bool json = false;
};

struct Trial {
  std::string name;
  std::optional<std::int32_t> answer;  ///< none: there is nothing to try it on
};

struct Operation {
  const char* call;
  std::int32_t answer;
};

struct Description {
  std::vector<ListedParameter> parameters;
  std::vector<Trial> conditions;
  std::vector<Trial> actions;
  std::vector<Operation> operations;
};

/// Counts before it tries, because what is accepted stays in the module; then tries
/// the names and the operations, nothing that starts the reader.
Description Describe(const LoadedModule& module, const DescribeOptions& options,
                     HostRecorder& host) {
  Description description;
  description.parameters = module.Parameters();
  description.operations = {{"GetParameterCount", module->GetParameterCount()},
                            {"GetConditionCount", module->GetConditionCount()}};
  std::optional<std::string> accepted;
  for (const std::string& name : options.conditions) {
    const std::int32_t answer = module->AddCondition(name.c_str(), AnyValue);
    description.conditions.push_back({name, answer});
    if (answer == ResultSuccess && !accepted) {
      accepted = name;
    }
  }
  for (const std::string& name : options.actions) {
    description.actions.push_back({name, std::nullopt});
    if (accepted) {
      description.actions.back().answer =
          module->AddAction(accepted->c_str(), AnyValue, name.c_str(), "script");
    }
  }

  const char* value = nullptr;
  module->SetHost(&host);
  const std::vector<Operation> others = {
      {"SetParameter of an unknown name", module->SetParameter(UnknownName, "")},
      {"GetParameter of an unknown name", module->GetParameter(UnknownName, &value)},
      {"AddCondition of an unknown name", module->AddCondition(UnknownName, AnyValue)},
      {"AddAction to an unknown condition",
       module->AddAction(UnknownName, AnyValue, UnknownName, "")},
      {"Shutdown without Initialise", module->Shutdown()},
  };
  description.operations.insert(description.operations.end(), others.begin(), others.end());
  return description;
}

nlohmann::ordered_json ToJson(const std::vector<Trial>& trials) {
  auto list = nlohmann::ordered_json::array();
  for (const Trial& trial : trials) {
    nlohmann::ordered_json one = {{"name", trial.name},
                                  {"accepted", trial.answer == ResultSuccess}};
    if (trial.answer) {
      one["answer"] = *trial.answer;
    }
    list.push_back(one);
  }
  return list;
}

std::string JsonOf(const std::string& module, const Description& description) {
  nlohmann::ordered_json object = {{"kind", "module"}, {"schema", 1}, {"module", module}};
  object["parameters"] = nlohmann::ordered_json::array();
  for (const ListedParameter& parameter : description.parameters) {
    object["parameters"].push_back({{"name", parameter.name}, {"value", parameter.value}});
  }
  object["conditions"] = ToJson(description.conditions);
  object["actions"] = ToJson(description.actions);
  object["operations"] = nlohmann::ordered_json::array();
  for (const Operation& operation : description.operations) {
    object["operations"].push_back({{"call", operation.call}, {"answer", operation.answer}});
  }
  return JsonLine(object);
}

std::string Row(const std::string& name, const std::string& text) {
  return "  " + Padded(name, 34) + "  " + text + "\n";
}

std::string Rows(const char* title, const std::vector<Trial>& trials) {
  std::string rows = std::string(title) + "\n";
  for (const Trial& trial : trials) {
    std::string text = "accepted";
    if (!trial.answer) {
      text = "not tried: no condition is accepted";
    } else if (*trial.answer != ResultSuccess) {
      text = "refused: " + std::to_string(*trial.answer);
    }
    rows += Row(Escaped(trial.name), text);
  }
  return rows;
}

std::string TextOf(const std::string& module, const Description& description) {
  std::string text = "module  " + Escaped(Utf8FromPath(PathFromUtf8(module).filename())) +
                     "\nparameters, " + std::to_string(description.parameters.size()) + "\n";
  for (const ListedParameter& parameter : description.parameters) {
    text += Row(Escaped(parameter.name),
                parameter.value.empty() ? "(not set)" : EscapedPaths(parameter.value));
  }
  text += Rows("conditions, by trying", description.conditions);
  text += Rows("actions, by trying", description.actions);
  text += "operations\n";
  for (const Operation& operation : description.operations) {
    text += Row(operation.call, "answered " + std::to_string(operation.answer));
  }
  return text + Row("Initialise", "not called: it starts the reader");
}

Description Describe(const DescribeOptions& options) {
  const ModuleLibrary library(PathFromUtf8(options.module));
  try {
    HostRecorder host({}, {});
    return Describe(LoadedModule(library, &host), options, host);
  } catch (const std::exception& problem) {
    // What a module throws may need its library; this does not.
    throw std::runtime_error(problem.what());
  }
}

int Run(const DescribeOptions& options) {
  PrepareTerminal();
  const Description description = Describe(options);
  WriteOut(std::cout, options.json ? JsonOf(options.module, description)
                                   : TextOf(options.module, description));
  return EXIT_SUCCESS;
}

}  // namespace

void AddDescribeCommand(CLI::App& app, int& exitStatus) {
  const auto options = std::make_shared<DescribeOptions>();
  options->conditions = {KnownCondition};
  options->actions = {KnownAction};

  CLI::App* command =
      app.add_subcommand("describe", "Show a module's parameters, conditions and actions");
  command->footer(Examples);
  command->add_option("MODULE", options->module, "The module's library")
      ->required()
      ->option_text("FILE");
  const auto addNames = [command](const char* option, std::vector<std::string>& names,
                                  const std::string& what) {
    command
        ->add_option_function<std::vector<std::string>>(
            option,
            [&names](const std::vector<std::string>& more) {
              names.insert(names.end(), more.begin(), more.end());
            },
            "Also try this " + what + "; repeatable")
        ->allow_extra_args(false)
        ->option_text("NAME");
  };
  addNames("--condition", options->conditions, "condition");
  addNames("--action", options->actions, "action");
  command->add_flag("--json", options->json, "Write one JSON object");
  command->callback([options, &exitStatus] { exitStatus = Run(*options); });
}

}  // namespace conduit
