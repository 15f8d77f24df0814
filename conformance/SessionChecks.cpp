#include <algorithm>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "conformance/Check.h"
#include "conformance/ModuleLists.h"
#include "conformance/SessionWitness.h"
#include "conformance/Verdict.h"
#include "interfaces/ReaderEventCode.h"
#include "interfaces/ResultCode.h"

namespace conduit {

namespace {

/// Where the reader of this desk does not start, there is nothing to check; an
/// answer that Initialise does not have is wrong all the same.
void StartOrSkip(const LoadedModule& module, SessionWitness& host, const CheckContext& context) {
  const std::int32_t started = host.Start(module, context.session);
  if (started == ResultReaderNotStarted) {
    Skip("the reader did not start: Initialise answered 13");
  }
  RequireResult("Initialise", ResultSuccess, started);
}

struct PlayedSession {
  Testimony heard;
  bool complete;
};

PlayedSession Play(const LoadedModule& module, SessionWitness& host, const CheckContext& context) {
  StartOrSkip(module, host, context);
  const bool complete = host.WaitForEnd(context.patience);
  module->Shutdown();
  return {host.Heard(), complete};
}

PlayedSession PlayDocuments(const CheckContext& context) {
  SessionWitness host;
  const LoadedModule module(context.library, &host);
  PlayedSession session = Play(module, host, context);
  if (session.heard.documents == 0 && session.heard.items == 0) {
    Skip("no document was delivered within " + std::to_string(context.patience.count()) + " ms");
  }
  return session;
}

}  // namespace

/// Only a reader that plays session files can be made to refuse. Whether this
/// one does shows in what it delivers: with the file a session to its end,
/// without it nothing.
void CheckReaderRefuses(const CheckContext& context) {
  SessionWitness trial;
  {
    const LoadedModule module(context.library, &trial);
    if (!Play(module, trial, context).complete) {
      Skip("the module's reader does not play session files");
    }
  }

  SessionWitness host;
  const LoadedModule module(context.library, &host);
  const std::int32_t refused = host.Start(module, context.missingSession);
  if (refused == ResultSuccess) {
    const bool plays = host.WaitForEnd(context.patience / 4);
    module->Shutdown();
    if (plays) {
      Skip("the module's reader starts without the session file");
    }
  }
  RequireResult("Initialise of a reader that refuses", ResultReaderNotStarted, refused);
  RequireResult("Initialise of a reader that starts, after one that refused,", ResultSuccess,
                host.Start(module, context.session));
  const bool complete = host.WaitForEnd(context.patience);
  module->Shutdown();
  if (!complete) {
    Fail("the session does not come to its end after a start that was refused");
  }
}

void CheckShutdownAnyTime(const CheckContext& context) {
  SessionWitness host;
  const LoadedModule module(context.library, &host);
  module->SetHost(&host);
  RequireResult("Shutdown without Initialise", ResultSuccess, module->Shutdown());
  RequireResult("Shutdown a second time, without Initialise,", ResultSuccess, module->Shutdown());
  if (host.Start(module, context.session) == ResultSuccess) {
    host.WaitForDelivery(context.patience);
  }
  RequireResult("Shutdown after Initialise", ResultSuccess, module->Shutdown());
  RequireResult("Shutdown a second time", ResultSuccess, module->Shutdown());
}

void CheckShutdownIsFinal(const CheckContext& context) {
  constexpr std::chrono::milliseconds silence(300);  // longer than the session's pauses
  SessionWitness host;
  const LoadedModule module(context.library, &host);
  StartOrSkip(module, host, context);
  host.WaitForDelivery(context.patience);
  module->Shutdown();
  host.Close();
  std::this_thread::sleep_for(silence);
  if (const std::string call = host.Heard().lateCall; !call.empty()) {
    Fail(call + " was called after Shutdown had returned");
  }
}

void CheckSessionBrackets(const CheckContext& context) {
  const auto [heard, complete] = PlayDocuments(context);
  if (!heard.bracketFault.empty()) {
    Fail(heard.bracketFault);
  }
  if (heard.documents == 0) {
    Fail("items came, but no BeginData");
  }
  if (complete && heard.documentOpen) {
    Fail("the session ended without the EndData of its last document");
  }
}

void CheckSessionItems(const CheckContext& context) {
  const Testimony heard = PlayDocuments(context).heard;
  if (!heard.itemFault.empty()) {
    Fail(heard.itemFault);
  }
  if (heard.items == 0) {
    Fail("documents came, but no items");
  }
}

void CheckSessionActions(const CheckContext& context) {
  SessionWitness host;
  const LoadedModule module(context.library, &host);
  const std::set<std::string> known(std::begin(ReaderEventNames), std::end(ReaderEventNames));
  for (const std::string& event : known) {
    if (module->AddCondition("ReceiveEvent", event.c_str()) != ResultSuccess) {
      Skip("the module has no condition ReceiveEvent");
    }
    for (const char* const script : {":first", ":second"}) {
      if (module->AddAction("ReceiveEvent", event.c_str(), "SetActiveScript",
                            (event + script).c_str()) != ResultSuccess) {
        Skip("the module has no action SetActiveScript");
      }
    }
  }
  const Testimony heard = Play(module, host, context).heard;
  std::vector<std::string> expected;
  for (const std::string& event : heard.events) {
    if (known.contains(event)) {
      expected.push_back(event + ":first");
      expected.push_back(event + ":second");
    }
  }
  if (expected.empty()) {
    Skip("the reader sent no event");
  }
  const auto [wanted, given] = std::ranges::mismatch(expected, heard.scripts);
  if (wanted != expected.end() || given != heard.scripts.end()) {
    Fail("SetActiveScript was called for " +
         (given == heard.scripts.end() ? "nothing more" : *given) + " instead of " +
         (wanted == expected.end() ? "nothing more" : *wanted));
  }
}

}  // namespace conduit
