#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "console_host/commands/DescribeCommand.h"
#include "console_host/commands/RunCommand.h"
#include "console_host/commands/ValidateCommand.h"
#include "platform/Process.h"
#include <conduit/Version.h>

namespace {

constexpr int WrongUsage = 2;

constexpr const char* Examples = R"(
Examples:
  conduit run samples/session.json
  conduit run samples/session.json --set DateOfBirthFormat=%d.%m.%Y --on DOC_ON_WINDOW=greet
  conduit run samples/session.json --report run.html --save items
  conduit describe ./MyModule.so
  conduit validate ./MyModule.so
  conduit run --help)";

int Run(int count, const char* const* arguments) {
  int exitStatus = EXIT_SUCCESS;
  CLI::App app("A host for input modules on the console.", "conduit");
  app.footer(Examples);
  app.set_version_flag("--version", "conduit " CONDUIT_VERSION);
  app.allow_windows_style_options(false);  // a path may begin with a slash everywhere
  app.require_subcommand(1);
  conduit::AddRunCommand(app, exitStatus);
  conduit::AddDescribeCommand(app, exitStatus);
  conduit::AddValidateCommand(app, exitStatus);

  try {
    std::vector<std::string> given = conduit::ProgramArguments(count, arguments);
    std::reverse(given.begin(), given.end());  // the order in which this parse takes them
    app.parse(std::move(given));
  } catch (const CLI::ParseError& problem) {
    return app.exit(problem) == EXIT_SUCCESS ? EXIT_SUCCESS : WrongUsage;
  }
  return exitStatus;
}

}  // namespace

int main(int count, char** arguments) {
  // What a document says about a person stands in reports and saved items.
  conduit::KeepFilesPrivate();
  try {
    return Run(count, arguments);
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "conduit: %s\n", problem.what());
    return EXIT_FAILURE;
  }
}
