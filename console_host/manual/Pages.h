#pragma once

#include <ostream>
#include <vector>

#include "console_host/manual/CommandTable.h"

namespace conduit {

// What is made from a command line; `commands` begins with the program itself.

/// For `man`, in roff.
void WriteManPage(const std::vector<DescribedCommand>& commands, std::ostream& out);

// Completions: what the shells offer while a command line is typed.
void WriteBashCompletion(const std::vector<DescribedCommand>& commands, std::ostream& out);
void WriteZshCompletion(const std::vector<DescribedCommand>& commands, std::ostream& out);
void WriteFishCompletion(const std::vector<DescribedCommand>& commands, std::ostream& out);

}  // namespace conduit
