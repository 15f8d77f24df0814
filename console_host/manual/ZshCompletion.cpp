#include <string>
#include <string_view>

#include "console_host/manual/Pages.h"

namespace conduit {
namespace {

/// Inside of single quotes, in a text whose parts end in colons and brackets.
std::string Quoted(std::string_view text) {
  std::string quoted;
  for (const char character : text) {
    if (character == '\'') {
      quoted += "'\\''";
    } else {
      if (std::string_view("\\:[]").find(character) != std::string_view::npos) {
        quoted += '\\';
      }
      quoted += character;
    }
  }
  return quoted;
}

std::string Action(const DescribedOption& option) {
  switch (option.offer) {
    case Offer::Files:
      return "_files";
    case Offer::Folders:
      return "_files -/";
    case Offer::Words: {
      std::string words;
      for (const std::string& word : option.words) {
        words += (words.empty() ? "" : " ") + word;
      }
      return "(" + words + ")";
    }
    case Offer::Nothing:
      break;
  }
  return "";
}

std::string Value(const DescribedOption& option) {
  return ":" + Quoted(option.argument) + ":" + Action(option);
}

void WriteOptions(const DescribedCommand& command, std::ostream& out) {
  for (const DescribedOption& option : command.options) {
    for (const std::string& name : option.names) {
      const bool hasValue = !option.argument.empty();
      out << " \\\n        '" << (option.repeatable ? "*" : "") << name << (hasValue ? "=" : "")
          << '[' << Quoted(option.description) << ']' << (hasValue ? Value(option) : "") << '\'';
    }
  }
}

}  // namespace

void WriteZshCompletion(const std::vector<DescribedCommand>& commands, std::ostream& out) {
  out << "#compdef conduit\n"
         "# Completes the command line of conduit in zsh.\n"
         "_conduit() {\n"
         "  local context state state_descr line\n"
         "  typeset -A opt_args\n"
         "  _arguments -C";
  WriteOptions(commands.front(), out);
  out << " \\\n        '1:command:->command' '*::argument:->argument'\n"
         "  case $state in\n"
         "    command)\n"
         "      local -a commands=(";
  for (std::size_t at = 1; at < commands.size(); ++at) {
    out << "\n        '" << commands[at].name << ':' << Quoted(commands[at].description) << '\'';
  }
  out << ")\n"
         "      _describe command commands\n"
         "      ;;\n"
         "    argument)\n"
         "      case $line[1] in\n";
  for (std::size_t at = 1; at < commands.size(); ++at) {
    out << "      " << commands[at].name << ")\n      _arguments";
    WriteOptions(commands[at], out);
    for (const DescribedOption& positional : commands[at].positionals) {
      out << " \\\n        '" << (positional.required ? ":" : "::") << positional.names.front()
          << ':' << Action(positional) << '\'';
    }
    out << "\n      ;;\n";
  }
  out << "      esac\n"
         "      ;;\n"
         "  esac\n"
         "}\n"
         "_conduit \"$@\"\n";
}

}  // namespace conduit
