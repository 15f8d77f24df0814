#include "console_host/commands/ValidateCommand.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "conformance/Check.h"
#include "conformance/Verdict.h"
#include "console_host/CheckProcess.h"
#include "console_host/NamedPair.h"
#include "console_host/TextParts.h"
#include "console_host/WriteOut.h"
#include "hosting/Utf8.h"
#include "platform/FilePath.h"
#include "platform/Interrupt.h"
#include "platform/Terminal.h"

namespace conduit {
namespace {

using Status = Verdict::Status;

constexpr const char* Examples = R"(
Examples:
  conduit validate ./MyModule.so
      holds the module against every check
  conduit validate ./MyModule.so --only 'parameter-*' --only unknown-parameter
      runs the checks of its parameters
  conduit validate ./MyModule.so --session samples/session.json --timeout 60
      plays a session of your own, which takes longer
  conduit validate ./MyModule.so --set Port=/dev/ttyUSB0
      sets what the module's reader needs to start
  conduit validate ./MyModule.so --json | grep '"status":"failed"'
      gives programs one JSON object a line
  conduit validate --list
      names the checks

Exit status: 0 no check failed, though some may warn; 1 one failed, or the
module cannot be loaded or refuses a setting; 2 wrong usage; 128 and the
signal's number when interrupted.)";

struct ValidateOptions : CheckOptions {
  std::vector<std::string> only;  ///< patterns
  bool list = false;
  bool json = false;
};

/// Whether a name fits a pattern, in which a * stands for any characters.
bool Fits(std::string_view pattern, std::string_view name) {
  if (pattern.empty()) {
    return name.empty();
  }
  if (pattern[0] == '*') {
    return Fits(pattern.substr(1), name) || (!name.empty() && Fits(pattern, name.substr(1)));
  }
  return !name.empty() && pattern[0] == name[0] && Fits(pattern.substr(1), name.substr(1));
}

/// As a check of the command line: an error naming the checks, or nothing.
std::string RefusePattern(const std::string& pattern) {
  const bool fitsAny = std::ranges::any_of(
      AllChecks(), [&](const Check& check) { return Fits(pattern, check.name); });
  return fitsAny ? ""
                 : "no check fits '" + pattern +
                       "'; the checks are: " + Joined(AllChecks(), ", ", &Check::name);
}

bool IsWanted(const Check& check, const ValidateOptions& options) {
  return options.only.empty() || std::ranges::any_of(options.only, [&](const auto& pattern) {
           return Fits(pattern, check.name);
         });
}

constexpr std::size_t NameWidth = 20;

class Report {
 public:
  explicit Report(bool json) : json(json) {}

  void Begin(const std::string& module) const {
    if (json) {
      WriteJson({{"kind", "validate"}, {"schema", 1}, {"module", module}});
    } else {
      const std::string name = Utf8FromPath(PathFromUtf8(module).filename());
      WriteOut(std::cout, "validate  " + Escaped(name) + "\n");
    }
  }

  void Add(const Check& check, const Verdict& verdict) {
    ++counts[verdict.status];
    if (json) {
      nlohmann::ordered_json line = {
          {"kind", "check"}, {"name", check.name}, {"status", NameOf(verdict.status)}};
      if (!verdict.reason.empty()) {
        line["reason"] = verdict.reason;
      }
      WriteJson(line);
      return;
    }
    const std::string status = verdict.status == Status::Failed ? "FAILED" : NameOf(verdict.status);
    if (verdict.reason.empty()) {
      WriteRow(status, check.name, check.proves);
      return;
    }
    const auto [told, isNew] = firstOfReason.emplace(verdict.reason, check.name);
    WriteRow(status, check.name, isNew ? verdict.reason : "as " + told->second);
  }

  void End() {
    if (json) {
      WriteJson({{"kind", "summary"},
                 {"passed", counts[Status::Passed]},
                 {"warnings", counts[Status::Warning]},
                 {"failed", counts[Status::Failed]},
                 {"skipped", counts[Status::Skipped]}});
    } else {
      const auto counted = [this](Status status, const char* noun) {
        return std::to_string(counts[status]) + noun;
      };
      WriteOut(std::cout, counted(Status::Passed, " passed, ") +
                              counted(Status::Warning,
                                      counts[Status::Warning] == 1 ? " warning, " : " warnings, ") +
                              counted(Status::Failed, " failed, ") +
                              counted(Status::Skipped, " skipped\n"));
    }
  }

  bool HasFailure() { return counts[Status::Failed] > 0; }

 private:
  static void WriteJson(const nlohmann::ordered_json& line) { WriteOut(std::cout, JsonLine(line)); }

  static void WriteRow(const std::string& status, const std::string& name,
                       const std::string& text) {
    WriteOut(std::cout, "  " + Padded(status, 8) + Padded(name, NameWidth) + " " + text + "\n");
  }

  const bool json;
  std::map<Status, int> counts;
  std::map<std::string, std::string> firstOfReason;  ///< the check that told it
};

int List() {
  std::string list;
  for (const Check& check : AllChecks()) {
    list.append(Padded(check.name, NameWidth)).append(" ").append(check.proves).append("\n");
  }
  WriteOut(std::cout, list);
  return EXIT_SUCCESS;
}

int Validate(const ValidateOptions& options) {
  PrepareTerminal();
  CatchInterrupts();
  const CheckRunner runner(options);
  const std::optional<Verdict> loaded = runner.Run(nullptr);
  if (loaded && loaded->status == Status::Failed) {
    throw std::runtime_error("cannot validate module " + EscapedPaths(options.module) + ": " +
                             loaded->reason);
  }
  Report report(options.json);
  report.Begin(options.module);
  for (const Check& check : AllChecks()) {
    const std::optional<Verdict> verdict =
        InterruptStatus() == 0 && IsWanted(check, options) ? runner.Run(&check) : std::nullopt;
    if (verdict) {
      report.Add(check, *verdict);
    }
  }
  if (InterruptStatus() != 0) {
    return InterruptStatus();
  }
  report.End();
  return report.HasFailure() ? EXIT_FAILURE : EXIT_SUCCESS;
}

int Run(const ValidateOptions& options) {
  if (options.list) {
    return List();
  }
  if (options.module.empty()) {
    throw CLI::RequiredError("MODULE");
  }
  return options.runCheck.empty() ? Validate(options) : RunCheckHere(options);
}

}  // namespace

void AddValidateCommand(CLI::App& app, int& exitStatus) {
  const auto options = std::make_shared<ValidateOptions>();
  CLI::App* command =
      app.add_subcommand("validate", "Hold a module against the interface, check by check");
  command->footer(Examples);
  command->add_option("MODULE", options->module, "The module's library")->option_text("FILE");
  command->add_flag("--list", options->list, "Name the checks and what each proves");
  command
      ->add_option("--only", options->only,
                   "Run the checks that fit: a name, in which * stands for any characters; "
                   "repeatable")
      ->allow_extra_args(false)
      ->check(CLI::Validator(RefusePattern, "PATTERN"))
      ->option_text("PATTERN");
  command
      ->add_option("--session", options->session,
                   "The session that the module's reader plays; without it a short one of this "
                   "program's own")
      ->option_text("FILE");
  command
      ->add_option("--set", options->settings,
                   "Set a parameter of the module before each start of its reader; repeatable")
      ->allow_extra_args(false)
      ->check(NamedPair("NAME=VALUE"))
      ->option_text("NAME=VALUE");
  command
      ->add_option("--timeout", options->timeout,
                   "How long one check may take; a session has half of it")
      ->check(CLI::Range(1, 3600))
      ->option_text("SECONDS (default: 10)");
  command->add_flag("--json", options->json, "Write one JSON object a line");
  command->add_option("--run-check", options->runCheck)->group("");  // hidden: see CheckRunner
  command->add_option("--many-documents", options->manyDocuments)->group("");
  command->add_flag("--built-in", options->builtIn)->group("");
  command->callback([options, &exitStatus] { exitStatus = Run(*options); });
}

}  // namespace conduit
