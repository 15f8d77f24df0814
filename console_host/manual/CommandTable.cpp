#include "console_host/manual/CommandTable.h"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace conduit {
namespace {

/// The texts of a set, which the command line names as "TEXT:{ONE,OTHER}".
std::vector<std::string> WordsOf(const std::string& typeName) {
  std::vector<std::string> words;
  const std::size_t begin = typeName.find('{');
  const std::size_t end = typeName.find('}');
  if (begin != std::string::npos && end != std::string::npos) {
    std::istringstream list(typeName.substr(begin + 1, end - begin - 1));
    for (std::string word; std::getline(list, word, ',');) {
      words.push_back(word);
    }
  }
  return words;
}

Offer OfferFor(std::string_view argument) {
  if (argument.starts_with("FILE")) {
    return Offer::Files;
  }
  return argument.starts_with("FOLDER") ? Offer::Folders : Offer::Nothing;
}

DescribedOption Describe(const CLI::Option& option) {
  DescribedOption described;
  if (option.get_positional()) {
    described.names.push_back(option.get_name(true));
  }
  for (const std::string& name : option.get_snames()) {
    described.names.push_back("-" + name);
  }
  for (const std::string& name : option.get_lnames()) {
    described.names.push_back("--" + name);
  }
  described.description = option.get_description();
  described.required = option.get_required();
  if (option.get_items_expected_max() == 0) {
    return described;
  }
  const std::string& argument = option.get_option_text();
  const std::size_t note = std::min(argument.find(" ("), argument.size());  // the default
  described.argument = argument.substr(0, note);
  described.description += argument.substr(note);
  described.words = WordsOf(option.get_type_name());
  described.offer = described.words.empty() ? OfferFor(described.argument) : Offer::Words;
  described.repeatable = option.get_items_expected_max() > 1;
  return described;
}

DescribedCommand Describe(const CLI::App& command) {
  DescribedCommand described{
      command.get_name(), command.get_description(), command.get_footer(), {}, {}};
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_group().empty()) {
      continue;  // hidden
    }
    (option->get_positional() ? described.positionals : described.options)
        .push_back(Describe(*option));
  }
  return described;
}

}  // namespace

std::vector<DescribedCommand> DescribeCommandLine(const CLI::App& app) {
  std::vector<DescribedCommand> commands = {Describe(app)};
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    commands.push_back(Describe(*command));
  }
  return commands;
}

}  // namespace conduit
