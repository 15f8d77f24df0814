#include "console_host/CommandLine.h"

#include "console_host/commands/DescribeCommand.h"
#include "console_host/commands/RunCommand.h"
#include "console_host/commands/ValidateCommand.h"
#include <conduit/Version.h>

namespace conduit {
namespace {

constexpr const char* Examples = R"(
Examples:
  conduit run samples/session.json
  conduit run samples/session.json --set DateOfBirthFormat=%d.%m.%Y --on DOC_ON_WINDOW=greet
  conduit run samples/session.json --report run.html --save items
  conduit describe ./MyModule.so
  conduit validate ./MyModule.so
  conduit run --help)";

}  // namespace

void DefineCommandLine(CLI::App& app, int& exitStatus) {
  app.name("conduit");
  app.description("A host for input modules on the console.");
  app.footer(Examples);
  app.set_version_flag("--version", "conduit " CONDUIT_VERSION);
  app.allow_windows_style_options(false);  // a path may begin with a slash everywhere
  app.require_subcommand(1);
  AddRunCommand(app, exitStatus);
  AddDescribeCommand(app, exitStatus);
  AddValidateCommand(app, exitStatus);
}

}  // namespace conduit
