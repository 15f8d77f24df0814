#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string_view>

#include "console_host/CommandLine.h"
#include "console_host/manual/Pages.h"

namespace {

struct Page {
  std::string_view name;
  void (*write)(const std::vector<conduit::DescribedCommand>& commands, std::ostream& out);
};

constexpr Page Pages[] = {
    {"man", conduit::WriteManPage},
    {"bash", conduit::WriteBashCompletion},
    {"zsh", conduit::WriteZshCompletion},
    {"fish", conduit::WriteFishCompletion},
};

int Write(const Page& page) {
  int exitStatus = EXIT_SUCCESS;
  CLI::App app;
  conduit::DefineCommandLine(app, exitStatus);
  page.write(conduit::DescribeCommandLine(app), std::cout);
  return std::cout.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

/// Writes the manual page of `conduit` or the completion of a shell, while the project is
/// built.
int main(int count, char** arguments) {
  const std::string_view name = count == 2 ? arguments[1] : "";
  for (const Page& page : Pages) {
    if (page.name == name) {
      try {
        return Write(page);
      } catch (const std::exception& problem) {
        std::fprintf(stderr, "conduit_manual: %s\n", problem.what());
        return EXIT_FAILURE;
      }
    }
  }
  std::fprintf(stderr, "usage: conduit_manual man|bash|zsh|fish\n");
  return 2;
}
