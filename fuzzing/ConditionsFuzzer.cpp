// Adds arbitrary conditions and actions and sends events: only the first condition of a
// value fires.
#include <fuzzer/FuzzedDataProvider.h>

#include <map>
#include <vector>

#include "fullpage/FullPageInputModule.h"
#include "fuzzing/CheckingHost.h"
#include "fuzzing/Require.h"

namespace conduit {
namespace {

/// Returns one of a few short names, so that names repeat.
std::string Name(FuzzedDataProvider& input, const char* usual) {
  return input.ConsumeBool() ? usual : UpToNul(input.ConsumeRandomLengthString(3));
}

}  // namespace
}  // namespace conduit

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using conduit::Name;
  using conduit::Require;
  FuzzedDataProvider input(data, size);
  conduit::CheckingHost host;
  conduit::CheckingLogger logger;
  conduit::FullPageInputModule module(&logger);
  module.SetHost(&host);
  std::map<std::string, std::vector<std::string>> scripts;
  std::int32_t count = 0;
  while (input.remaining_bytes() > 0) {
    const std::string kind = Name(input, "ReceiveEvent");
    const std::string value = Name(input, "DOC_ON_WINDOW");
    if (input.ConsumeBool()) {
      const bool added = module.AddCondition(kind.c_str(), value.c_str()) == 0;
      Require(added == (kind == "ReceiveEvent"), "one kind of condition is known");
      if (added) {
        scripts.try_emplace(value);
        ++count;
      }
    } else {
      const std::string action = Name(input, "SetActiveScript");
      const std::string script = Name(input, "scan");
      const std::int32_t result =
          module.AddAction(kind.c_str(), value.c_str(), action.c_str(), script.c_str());
      const auto condition = scripts.find(value);
      if (kind != "ReceiveEvent" || condition == scripts.end()) {
        Require(result == conduit::ResultUnknownCondition, "an action needs its condition");
      } else if (action != "SetActiveScript") {
        Require(result == conduit::ResultUnknownAction, "one kind of action is known");
      } else {
        Require(result == 0, "a known action is attached");
        condition->second.push_back(script);
      }
    }
    const std::string event = Name(input, "DOC_ON_WINDOW");
    host.lastScript = "none";
    module.ReceiveEvent(event.c_str());
    const auto waiting = scripts.find(event);
    const bool fires = waiting != scripts.end() && !waiting->second.empty();
    Require(host.lastScript == (fires ? waiting->second.back() : "none"),
            "the actions of the event's condition run, to the last");
    Require(module.GetConditionCount() == count, "every condition counts");
  }
  return 0;
}
