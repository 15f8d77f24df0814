#include "conformance/Check.h"

#include <algorithm>
#include <iterator>

namespace conduit {
namespace {

constexpr Check Checks[] = {
    {"exports", "exports the two functions and no other names of its own", CheckExports},
    {"null-arguments", "the exported functions answer 6 to null pointers", CheckNullArguments},
    {"null-texts", "a null text counts as the empty one, wherever a text is given", CheckNullTexts},
    {"null-logger", "works without a logger, through a session as well", CheckNullLogger},
    {"create-destroy", "5000 modules, created and destroyed, leave no memory behind",
     CheckCreateDestroy},
    {"leaves-nothing", "modules that ran leave no thread, open file or process behind",
     CheckLeavesNothing, CheckNoProcessIsLeft},
    {"parameter-list", "names are sorted and stable; an index out of range writes nothing",
     CheckParameterList},
    {"parameter-values", "empty until set; what is set is read back; a refusal changes nothing",
     CheckParameterValues},
    {"parameter-texts", "what GetParameter gives stays good, and nothing beside it is written",
     CheckParameterTexts},
    {"unknown-parameter", "an unknown name is answered with 2", CheckUnknownParameter},
    {"unknown-condition", "an unknown condition name is answered with 3 and not added",
     CheckUnknownCondition},
    {"unknown-action", "an unknown action name is answered with 4", CheckUnknownAction},
    {"condition-list", "conditions are listed in the order in which they were added",
     CheckConditionList},
    {"reader-refuses", "Initialise answers 13 to a reader that refuses, and starts one later",
     CheckReaderRefuses},
    {"shutdown-any-time", "Shutdown answers 0 without Initialise, and twice", CheckShutdownAnyTime},
    {"shutdown-is-final", "nothing is delivered once Shutdown has returned", CheckShutdownIsFinal},
    {"shutdown-in-delivery", "Shutdown returns while an item or an event is being delivered",
     CheckShutdownInDelivery},
    {"second-start", "Initialise starts the reader again after Shutdown", CheckSecondStart},
    {"calls", "no reserved operation is called; log lines have a tag, a text and a known level",
     CheckCalls},
    {"session-memory", "documents leave no memory behind", CheckSessionMemory},
    {"session-brackets", "begin and end signals of a session are balanced", CheckSessionBrackets},
    {"session-items", "names, types, lengths and properties are those of the interface",
     CheckSessionItems},
    {"session-events", "each event comes after a ReportError and before a ReportState",
     CheckSessionEvents},
    {"session-actions", "each event runs its condition's actions, in their order",
     CheckSessionActions},
    {"failed-actions", "a script that is refused keeps the condition's others from running",
     CheckFailedActions},
};

}  // namespace

std::span<const Check> AllChecks() { return Checks; }

const Check* FindCheck(const std::string& name) {
  const Check* const found =
      std::ranges::find_if(Checks, [&](const Check& check) { return check.name == name; });
  return found == std::end(Checks) ? nullptr : found;
}

}  // namespace conduit
