#include <string>

#include "console_host/manual/Pages.h"

namespace conduit {
namespace {

/// The statement that offers what fits; without one the shell offers nothing.
std::string Offering(Offer offer, const std::vector<std::string>& words) {
  std::string list;
  for (const std::string& word : words) {
    list += (list.empty() ? "" : "\\n") + word;
  }
  switch (offer) {
    case Offer::Files:
      return "compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$word\")";
    case Offer::Folders:
      return "compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- \"$word\")";
    case Offer::Words:
      return "mapfile -t COMPREPLY < <(compgen -W $'" + list + "' -- \"$word\")";
    case Offer::Nothing:
      break;
  }
  return ":";
}

std::vector<std::string> OptionNames(const DescribedCommand& command) {
  std::vector<std::string> names;
  for (const DescribedOption& option : command.options) {
    names.insert(names.end(), option.names.begin(), option.names.end());
  }
  return names;
}

void WriteCase(const std::string& pattern, const std::string& statement, std::ostream& out) {
  out << "    " << pattern << ") " << statement << " ;;\n";
}

}  // namespace

void WriteBashCompletion(const std::vector<DescribedCommand>& commands, std::ostream& out) {
  std::string names;
  for (std::size_t at = 1; at < commands.size(); ++at) {
    names += (names.empty() ? "" : " | ") + commands[at].name;
  }
  out << R"(# Completes the command line of conduit in bash.
_conduit() {
  local IFS=$'\n' word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command= index
  COMPREPLY=()
  # An option and its value that are joined by = come as three words.
  if [[ $word == = ]]; then
    word=
  elif [[ $before == = ]]; then
    before=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  for ((index = 1; index < COMP_CWORD; ++index)); do
    case ${COMP_WORDS[index]} in
      )"
      << names << R"()
        command=${COMP_WORDS[index]}
        break
        ;;
    esac
  done
  case "$command $before" in
)";
  for (const DescribedCommand& command : commands) {
    for (const DescribedOption& option : command.options) {
      if (!option.argument.empty()) {
        for (const std::string& name : option.names) {
          WriteCase("'" + command.name + " " + name + "'",
                    Offering(option.offer, option.words) + "; return", out);
        }
      }
    }
  }
  out << "  esac\n  case \"$command $word\" in\n";
  for (std::size_t at = 1; at < commands.size(); ++at) {
    const DescribedCommand& command = commands[at];
    WriteCase("'" + command.name + " -'*", Offering(Offer::Words, OptionNames(command)), out);
    if (!command.positionals.empty()) {
      const DescribedOption& positional = command.positionals.front();
      WriteCase("'" + command.name + " '*", Offering(positional.offer, positional.words), out);
    }
  }
  std::vector<std::string> first = OptionNames(commands.front());
  for (std::size_t at = 1; at < commands.size(); ++at) {
    first.push_back(commands[at].name);
  }
  WriteCase("' '*", Offering(Offer::Words, first), out);
  out << "  esac\n}\ncomplete -F _conduit conduit\n";
}

}  // namespace conduit
