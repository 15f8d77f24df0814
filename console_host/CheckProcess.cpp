#include "console_host/CheckProcess.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "conformance/BuiltInSession.h"
#include "console_host/NamedPair.h"
#include "hosting/LoadedModule.h"
#include "platform/ChildProcess.h"
#include "platform/Environment.h"
#include "platform/FilePath.h"
#include "platform/Process.h"
#include "platform/ProcessResources.h"
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

using Status = Verdict::Status;

/// Loads the library, and sees whether the module takes the user's settings: not a
/// check that a user can name, because without it there is nothing to check.
constexpr const char* LoadOnly = "load";

std::vector<Setting> SettingsGiven(const CheckOptions& options) {
  std::vector<Setting> settings;
  for (const std::string& setting : options.settings) {
    const auto [name, value] = SplitPair(setting);
    settings.push_back({name, value});
  }
  return settings;
}

void RequireSettings(const ModuleLibrary& library, const std::vector<Setting>& settings) {
  if (settings.empty()) {
    return;
  }
  const LoadedModule module(library, nullptr);
  for (const auto& [name, value] : settings) {
    const std::string call =
        std::string("SetParameter of --set ").append(name).append("=").append(value);
    RequireResult(call, ResultSuccess, module->SetParameter(name.c_str(), value.c_str()));
  }
}

ModuleLibrary LoadOrFail(const std::filesystem::path& module) {
  try {
    return ModuleLibrary(module);
  } catch (const ModuleError& problem) {
    Fail(problem.reason);
  }
}

/// While the library is loaded, where the code of what it throws may stand.
/// @param check  null to see no more than whether the settings are taken
void RunLoaded(const Check* check, const CheckOptions& options, const ModuleLibrary& library) {
  const std::filesystem::path session = PathFromUtf8(options.session);
  const std::filesystem::path manyDocuments =
      options.manyDocuments.empty() ? session : PathFromUtf8(options.manyDocuments);
  // Half of the time limit, to have an answer before it is up.
  const std::chrono::milliseconds patience(options.timeout * 500);
  const std::vector<Setting> settings = SettingsGiven(options);
  try {
    if (check != nullptr) {
      check->run({library, library.File(), session, session.parent_path() / "no such session.json",
                  manyDocuments, options.builtIn, settings, patience});
    } else {
      RequireSettings(library, settings);
    }
  } catch (const std::exception& problem) {
    Fail(std::string("threw an exception: ") + problem.what());
  } catch (...) {
    Fail("threw an exception of an unknown type");
  }
}

}  // namespace

CheckRunner::CheckRunner(const CheckOptions& options)
    : module(std::filesystem::absolute(PathFromUtf8(options.module))),
      session(options.session.empty() ? WriteBuiltInSession(folder.path)
                                      : std::filesystem::absolute(PathFromUtf8(options.session))),
      manyDocuments(WriteSessionOfManyDocuments(folder.path)),
      isBuiltIn(options.session.empty()),
      settings(options.settings),
      timeout(options.timeout) {
  RequireReadable("session", session);
  // The checks run in another folder, so that a relative one is not found.
  SetEnvironment("TMPDIR", folder.path.parent_path());
  // Memory that a module frees too early shows at once: glibc fills it.
  SetEnvironment("MALLOC_PERTURB_", "165");
  SetEnvironment("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0");
}

std::optional<Verdict> CheckRunner::Run(const Check* check) const {
  const std::filesystem::path outputFile = folder.path / "output.txt";
  std::vector<std::string> arguments = {
      "validate", std::string("--run-check=") + (check != nullptr ? check->name : LoadOnly),
      "--session=" + Utf8FromPath(session), "--many-documents=" + Utf8FromPath(manyDocuments),
      "--timeout=" + std::to_string(timeout.count())};
  if (isBuiltIn) {
    arguments.emplace_back("--built-in");
  }
  for (const std::string& setting : settings) {
    arguments.push_back("--set=" + setting);
  }
  arguments.insert(arguments.end(), {"--", Utf8FromPath(module)});
  const ChildOutcome outcome = RunChild(ProgramFile(), arguments, folder.path, outputFile, timeout);
  if (outcome.end == ChildOutcome::End::Interrupted) {
    return std::nullopt;
  }
  std::ifstream stream(outputFile, std::ios::binary);
  const std::string output{std::istreambuf_iterator<char>(stream), {}};
  Verdict verdict = FindVerdict(output);
  if (!verdict.reason.empty()) {
    return verdict;
  }
  switch (outcome.end) {
    case ChildOutcome::End::TimedOut:
      return Verdict{Status::Failed, "no answer within " + std::to_string(timeout.count()) + " s"};
    case ChildOutcome::End::Crashed:
      return Verdict{Status::Failed, "crashed: " + outcome.cause};
    case ChildOutcome::End::Exited:
    case ChildOutcome::End::Interrupted:
      break;
  }
  if (verdict.status == Status::Passed && outcome.status == EXIT_SUCCESS) {
    return verdict;
  }
  return Verdict{Status::Failed, "ended the process with status " + std::to_string(outcome.status)};
}

int RunCheckHere(const CheckOptions& options) {
  AdoptOrphans();
  EndAtOnceOnCrash();
  const Check* const check = FindCheck(options.runCheck);
  {
    const ModuleLibrary library = LoadOrFail(PathFromUtf8(options.module));
    RunLoaded(check, options, library);
  }
  if (check && check->runUnloaded) {
    check->runUnloaded();
  }
  Announce({Status::Passed, ""});
  return EXIT_SUCCESS;
}

}  // namespace conduit
