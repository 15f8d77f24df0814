#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "console_host/CommandLine.h"
#include "console_host/WriteOut.h"
#include "platform/Process.h"

namespace {

constexpr int WrongUsage = 2;

int Run(int count, const char* const* arguments) {
  int exitStatus = EXIT_SUCCESS;
  CLI::App app;
  conduit::DefineCommandLine(app, exitStatus);

  try {
    std::vector<std::string> given = conduit::ProgramArguments(count, arguments);
    std::reverse(given.begin(), given.end());  // the order in which this parse takes them
    app.parse(std::move(given));
  } catch (const CLI::ParseError& problem) {
    std::ostringstream help;
    const int status = app.exit(problem, help, std::cerr);
    conduit::WriteOut(std::cout, help.str());
    return status == EXIT_SUCCESS ? EXIT_SUCCESS : WrongUsage;
  }
  return exitStatus;
}

}  // namespace

int main(int count, char** arguments) {
  // What a document says about a person stands in reports and saved items.
  conduit::KeepFilesPrivate();
  conduit::LetWritesFail();
  try {
    return Run(count, arguments);
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "conduit: %s\n", problem.what());
    return EXIT_FAILURE;
  }
}
