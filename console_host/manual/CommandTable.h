#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace conduit {

/// What a shell can offer in the place of an argument.
enum class Offer {
  Nothing,  ///< it is for the user to invent
  Files,
  Folders,
  Words,
};

/// An option, a flag or a positional argument as the user is told of it.
struct DescribedOption {
  std::vector<std::string> names;  ///< "-h", "--help"; one without dashes when positional
  std::string description;
  std::string argument;  ///< "FILE.html"; empty for a flag
  Offer offer = Offer::Nothing;
  std::vector<std::string> words;  ///< when those are offered
  bool required = false;
  bool repeatable = false;
};

/// A subcommand, or the program before any.
struct DescribedCommand {
  std::string name;
  std::string description;
  std::string footer;  ///< examples and exit status
  std::vector<DescribedOption> options;
  std::vector<DescribedOption> positionals;
};

/// What there is to know of a command line but for what it hides: the program first, then
/// its subcommands.
std::vector<DescribedCommand> DescribeCommandLine(const CLI::App& app);

}  // namespace conduit
