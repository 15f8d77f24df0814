#include <string>
#include <string_view>

#include "console_host/manual/Pages.h"

namespace conduit {
namespace {

std::string Quoted(std::string_view text) {
  std::string quoted = "'";
  for (const char character : text) {
    if (character == '\'' || character == '\\') {
      quoted += '\\';
    }
    quoted += character;
  }
  return quoted + "'";
}

std::string Value(const DescribedOption& option) {
  switch (option.offer) {
    case Offer::Files:
      return " -r -F";
    case Offer::Folders:
      return " -x -a '(__fish_complete_directories)'";
    case Offer::Words: {
      std::string words;
      for (const std::string& word : option.words) {
        words += (words.empty() ? "" : " ") + word;
      }
      return " -x -a " + Quoted(words);
    }
    case Offer::Nothing:
      break;
  }
  return " -x";
}

void WriteOptions(const std::string& begin, const DescribedCommand& command, std::ostream& out) {
  for (const DescribedOption& option : command.options) {
    out << begin;
    for (const std::string& name : option.names) {
      const bool isLong = name.starts_with("--");
      out << (isLong ? " -l " : " -s ") << name.substr(isLong ? 2 : 1);
    }
    out << (option.argument.empty() ? "" : Value(option)) << " -d " << Quoted(option.description)
        << '\n';
  }
}

}  // namespace

void WriteFishCompletion(const std::vector<DescribedCommand>& commands, std::ostream& out) {
  const std::string first = "complete -c conduit -n __fish_use_subcommand";
  out << "# Completes the command line of conduit in fish.\n"
         "complete -c conduit -f\n";
  WriteOptions(first, commands.front(), out);
  for (std::size_t at = 1; at < commands.size(); ++at) {
    const DescribedCommand& command = commands[at];
    out << first << " -a " << command.name << " -d " << Quoted(command.description) << '\n';
    const std::string begin =
        "complete -c conduit -n '__fish_seen_subcommand_from " + command.name + "'";
    WriteOptions(begin, command, out);
    for (const DescribedOption& positional : command.positionals) {
      if (positional.offer == Offer::Files) {
        out << begin << " -F\n";
      }
    }
  }
}

}  // namespace conduit
