#include <string>
#include <string_view>

#include "console_host/manual/Pages.h"
#include "platform/SessionLocation.h"
#include <conduit/Version.h>

namespace conduit {
namespace {

/// Text as it is to be read: what roff would take for itself is escaped, and a hyphen
/// stays one that can be copied.
std::string Roff(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    const bool atLineStart = escaped.empty() || escaped.back() == '\n';
    if (character == '\\') {
      escaped += "\\e";
    } else if (character == '-') {
      escaped += "\\-";
    } else {
      if (atLineStart && (character == '.' || character == '\'')) {
        escaped += "\\&";
      }
      escaped += character;
    }
  }
  return escaped;
}

std::string Bold(std::string_view text) { return "\\fB" + Roff(text) + "\\fR"; }
std::string Italic(std::string_view text) { return "\\fI" + Roff(text) + "\\fR"; }

void WriteOption(const DescribedOption& option, std::ostream& out) {
  out << ".TP\n";
  const char* separator = "";
  for (const std::string& name : option.names) {
    out << separator << Bold(name);
    separator = ", ";
  }
  if (!option.argument.empty()) {
    out << ' ' << Italic(option.argument);
  }
  out << '\n' << Roff(option.description) << ".\n";
}

void WriteCommand(const DescribedCommand& command, std::ostream& out) {
  out << ".SS " << Roff(command.name) << '\n' << Roff(command.description) << ".\n";
  for (const DescribedOption& positional : command.positionals) {
    WriteOption(positional, out);
  }
  for (const DescribedOption& option : command.options) {
    WriteOption(option, out);
  }
  out << ".PP\n.EX" << Roff(command.footer) << "\n.EE\n";
}

}  // namespace

void WriteManPage(const std::vector<DescribedCommand>& commands, std::ostream& out) {
  const DescribedCommand& program = commands.front();
  out << ".TH CONDUIT 1 \"\" \"conduit " CONDUIT_VERSION "\" \"User Commands\"\n"
      << ".SH NAME\nconduit \\- a host for input modules on the console\n.SH SYNOPSIS\n";
  for (const DescribedCommand& command : commands) {
    if (&command == &program) {
      continue;
    }
    out << ".B conduit " << Roff(command.name) << "\n[\\fIOPTIONS\\fR]";
    for (const DescribedOption& positional : command.positionals) {
      const std::string name = Italic(positional.names.front());
      out << ' ' << (positional.required ? name : "[" + name + "]");
    }
    out << "\n.br\n";
  }
  out << ".SH DESCRIPTION\n"
         "Loads the library of an input module, which receives scanned identity documents,\n"
         "starts it, and shows what it delivers; or looks at the module without a document.\n"
         ".SH OPTIONS\n";
  for (const DescribedOption& option : program.options) {
    WriteOption(option, out);
  }
  out << ".SH COMMANDS\n";
  for (const DescribedCommand& command : commands) {
    if (&command != &program) {
      WriteCommand(command, out);
    }
  }
  out << ".SH ENVIRONMENT\n.TP\n"
      << Bold(SessionVariable)
      << "\nThe session that the virtual reader plays when the command names none.\n.TP\n"
      << Bold("NO_COLOR") << "\nWhen set and not empty, output is without colours.\n"
      << ".SH SEE ALSO\nThe pages in share/doc/conduit, and the samples in share/conduit.\n";
}

}  // namespace conduit
