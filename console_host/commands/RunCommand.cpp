#include "console_host/commands/RunCommand.h"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "console_host/DefaultModule.h"
#include "console_host/JsonSink.h"
#include "console_host/NamedPair.h"
#include "console_host/ProgressLine.h"
#include "console_host/SaveSink.h"
#include "console_host/SessionPlay.h"
#include "console_host/TableSink.h"
#include "console_host/TextSink.h"
#include "console_host/TroubleSink.h"
#include "console_host/report/ReportSink.h"
#include "hosting/EndOfSession.h"
#include "hosting/HostRecorder.h"
#include "hosting/Utf8.h"
#include "platform/FilePath.h"
#include "platform/Interrupt.h"
#include "platform/SessionLocation.h"
#include "platform/Terminal.h"
#include <conduit/ItemName.h>

namespace conduit {
namespace {

constexpr std::chrono::seconds ProgressAfter(3);

constexpr const char* Examples = R"(
Examples:
  conduit run samples/session.json
      plays a session through the module beside this program
  conduit run scans
      lays every image of the folder "scans" on the window, in the order of
      their names; a text file beside an image is its codeline
  conduit run scans --watch
      goes on with every image that a scanner program adds, until Ctrl-C
  conduit run samples/session.json --set DateOfBirthFormat=%d.%m.%Y
      shows dates of birth as 31.12.1990
  conduit run samples/session.json --on DOC_ON_WINDOW=greet --log 2
      makes "greet" the active script when a document is laid down, and shows
      the module's trace
  conduit run samples/session.json --json | grep '"kind":"item"'
      gives programs one JSON object a line
  conduit run samples/session.json --report run.html --save items
      writes a page that shows the run, and every item as a file
  conduit run scans --table people.csv
      writes who is on the scans, a row for each
  conduit run --module ./MyModule.so --set LogFileName=reader.log
      drives the reader that the module's own reader library finds

Exit status: 0 the session was played to its end; 1 something failed, or pages
could not be read; 2 wrong usage; 130 Ctrl-C, 143 SIGTERM.)";

struct RunOptions : PlayOptions {
  std::vector<std::string> refusedSignals;
  bool json = false;
  bool data = false;
  std::string report;
  std::string table;
  std::string saveFolder;
};

/// Opens what the user asked to have written, so that a run whose outcome could
/// not be kept does not begin.
std::vector<std::unique_ptr<RunListener>> OpenFiles(const RunOptions& options) {
  std::vector<std::unique_ptr<RunListener>> files;
  if (!options.saveFolder.empty()) {
    files.push_back(std::make_unique<SaveSink>(PathFromUtf8(options.saveFolder)));
  }
  if (!options.report.empty()) {
    files.push_back(std::make_unique<ReportSink>(PathFromUtf8(options.report)));
  }
  if (!options.table.empty()) {
    files.push_back(std::make_unique<TableSink>(PathFromUtf8(options.table)));
  }
  return files;
}

/// Tells one that was told nothing since it failed.
void TellEnd(RunListener& listener, const RunEnded& end) noexcept {
  try {
    listener.OnRunEnded(end);
  } catch (const std::exception&) {
    // Its failure is the run's already.
  }
}

/// Tells each failure that the end of the run does not tell, as of files that cannot be
/// completed.
void TellOtherFailures(const HostRecorder& recorder, const RunEnded& end,
                       RunListener& trouble) noexcept {
  try {
    for (const std::string& failure : recorder.Failures()) {
      if (failure != end.message) {
        TellEnd(trouble, {EndReason::Failed, failure});
      }
    }
  } catch (const std::bad_alloc&) {
    TellEnd(trouble, {EndReason::Failed, OutOfMemory});
  }
}

/// Whether an environment variable holds anything.
bool IsSet(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

int Run(const RunOptions& options) {
  const bool terminal = PrepareTerminal();
  const bool colour = terminal && !IsSet("NO_COLOR");
  CatchInterrupts();

  const std::vector<std::unique_ptr<RunListener>> files = OpenFiles(options);
  TextSink text(std::cout, {colour, options.logLevel});
  JsonSink json(std::cout, {options.logLevel, options.data});
  TroubleSink trouble(std::cerr, {.log = options.logLevel < 0,
                                  .readerErrors = options.json || !TroubleShowsBesideOutput()});
  ProgressLine progress(std::cout, ProgressAfter);
  EndOfSession end;

  std::vector<RunListener*> listeners;
  if (terminal && !options.json) {
    listeners.push_back(&progress);
  }
  RunListener* const shown = options.json ? static_cast<RunListener*>(&json) : &text;
  listeners.push_back(shown);
  for (const std::unique_ptr<RunListener>& file : files) {
    listeners.push_back(file.get());
  }
  listeners.insert(listeners.end(), {&trouble, &end});
  HostRecorder recorder(listeners, {options.refusedSignals.begin(), options.refusedSignals.end()});

  const auto [ended, complete] = Play(options, recorder, end);
  // The user looks at one of these, also when it was the one that failed.
  for (RunListener* const listener : {shown, static_cast<RunListener*>(&trouble)}) {
    if (!recorder.IsTold(*listener)) {
      TellEnd(*listener, ended);
    }
  }
  TellOtherFailures(recorder, ended, trouble);
  if (recorder.HasFailed()) {
    return EXIT_FAILURE;
  }
  switch (ended.reason) {
    case EndReason::ReaderTerminated:
      return complete ? EXIT_SUCCESS : EXIT_FAILURE;
    case EndReason::Interrupted:
      return InterruptStatus();
    case EndReason::Failed:
      break;
  }
  return EXIT_FAILURE;
}

void AddRunOptions(CLI::App& command, RunOptions& options) {
  CLI::Option* const session =
      command
          .add_option(
              "SESSION", options.session,
              "Session file for the virtual reader, or a folder of page images; without one, "
              "the variable " +
                  std::string(SessionVariable) + " or a real reader decides")
          ->option_text("FILE|FOLDER");
  command
      .add_flag("--watch", options.watch,
                "Go on with every image that comes into the folder SESSION, until Ctrl-C")
      ->needs(session);
  command.add_option("--module", options.module, "The module's library")
      ->option_text("FILE (default: " + DefaultModulePlace() + ")");
  // Without extra arguments: `--set A=1 session.json` must not take the file.
  command.add_option("--set", options.settings, "Set a parameter of the module; repeatable")
      ->allow_extra_args(false)
      ->check(NamedPair("NAME=VALUE"))
      ->option_text("NAME=VALUE");
  command
      .add_option("--on", options.reactions,
                  "Make SCRIPT the active script when EVENT comes; repeatable")
      ->allow_extra_args(false)
      ->check(NamedPair("EVENT=SCRIPT"))
      ->option_text("EVENT=SCRIPT");
  command
      .add_option("--refuse", options.refusedSignals,
                  "Answer this signal so that the rest of its codeline is not delivered: "
                  "UNKNOWN_DOCUMENT or BAD_CHARS; repeatable")
      ->allow_extra_args(false)
      ->check(CLI::IsMember({Signal::UnknownDocument, Signal::BadChars}))
      ->option_text("SIGNAL");
  command
      .add_option("--log", options.logLevel,
                  "Show the module's log: 0 failures, 1 unknown parameters, 2 items and events, "
                  "3 configuration. Without it, failures go to standard error")
      ->check(CLI::Range(0, 3))
      ->option_text("LEVEL");
}

void AddOutputOptions(CLI::App& command, RunOptions& options) {
  CLI::Option* const json =
      command.add_flag("--json", options.json, "Write one JSON object a line");
  command.add_flag("--data", options.data, "With --json, give binary data, too, in base64")
      ->needs(json);
  command
      .add_option("--report", options.report,
                  "Write a page for the browser that shows the run; an earlier one is replaced")
      ->option_text("FILE.html");
  command
      .add_option("--table", options.table,
                  "Write a row for each document: its file, codeline, licence, barcodes and "
                  "warnings; an earlier table is replaced")
      ->check(CLI::Validator(
          [](const std::string& name) {
            return IsTableName(PathFromUtf8(name))
                       ? std::string()
                       : "the name of a table ends in .csv or .jsonl, unlike '" + name + "'";
          },
          "TABLE"))
      ->option_text("FILE.csv|FILE.jsonl");
  command
      .add_option("--save", options.saveFolder,
                  "Save every item as a file in this folder, which is new or empty")
      ->option_text("FOLDER");
}

}  // namespace

void AddRunCommand(CLI::App& app, int& exitStatus) {
  const auto options = std::make_shared<RunOptions>();
  options->module = Utf8FromPath(DefaultModule());

  CLI::App* command = app.add_subcommand("run", "Run a module and show what it delivers");
  command->footer(Examples);
  AddRunOptions(*command, *options);
  AddOutputOptions(*command, *options);
  command->callback([options, &exitStatus] { exitStatus = Run(*options); });
}

}  // namespace conduit
