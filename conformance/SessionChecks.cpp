#include <algorithm>
#include <atomic>
#include <future>
#include <iterator>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "conformance/Check.h"
#include "conformance/ModuleLists.h"
#include "conformance/SessionWitness.h"
#include "conformance/Verdict.h"
#include "platform/MemoryInUse.h"
#include <conduit/Reaction.h>
#include <conduit/ReaderEventCode.h>
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

/// Where the reader of this desk does not start, there is nothing to check; an
/// answer that Initialise does not have is wrong all the same.
void StartOrSkip(const LoadedModule& module, SessionWitness& host, const CheckContext& context) {
  const std::int32_t started = host.Start(module, context.session, context.settings);
  if (started == ResultReaderNotStarted) {
    Skip("the reader did not start: Initialise answered 13");
  }
  RequireResult("Initialise", ResultSuccess, started);
}

struct PlayedSession {
  Testimony heard;
  bool complete;
};

std::string WithinPatience(const CheckContext& context) {
  return " within " + std::to_string(context.patience.count()) + " ms";
}

/// A reader may be without a document, but not without anything to say.
void WarnOfSilence(const Testimony& heard, const CheckContext& context) {
  if (heard.events.empty() && heard.documents == 0 && heard.items == 0 && heard.errors == 0) {
    Warn("Initialise answered 0, but nothing came" + WithinPatience(context));
  }
}

PlayedSession Play(const LoadedModule& module, SessionWitness& host, const CheckContext& context) {
  StartOrSkip(module, host, context);
  const bool complete = host.WaitForEnd(context.patience);
  module->Shutdown();
  return {host.Heard(complete), complete};
}

PlayedSession PlayDocuments(const CheckContext& context) {
  SessionWitness host;
  const LoadedModule module(context.library, &host);
  PlayedSession session = Play(module, host, context);
  WarnOfSilence(session.heard, context);
  if (session.heard.documents == 0 && session.heard.items == 0) {
    Skip("no document was delivered" + WithinPatience(context));
  }
  return session;
}

/// Attaches two scripts to every event that has a name.
void AddScripts(const LoadedModule& module) {
  for (const char* const event : ReaderEventNames) {
    if (module->AddCondition(ConditionKind::ReceiveEvent, event) != ResultSuccess) {
      Skip("the module has no condition ReceiveEvent");
    }
    for (const char* const script : {":first", ":second"}) {
      if (module->AddAction(ConditionKind::ReceiveEvent, event, ActionKind::SetActiveScript,
                            (std::string(event) + script).c_str()) != ResultSuccess) {
        Skip("the module has no action SetActiveScript");
      }
    }
  }
}

/// Holds the scripts that were asked for against those of the events that came.
void RequireScripts(const PlayedSession& session, const std::vector<std::string>& each,
                    const CheckContext& context) {
  WarnOfSilence(session.heard, context);
  const std::set<std::string> known(std::begin(ReaderEventNames), std::end(ReaderEventNames));
  std::vector<std::string> expected;
  for (const std::string& event : session.heard.events) {
    for (const std::string& script : each) {
      if (known.contains(event)) {
        expected.push_back(event + script);
      }
    }
  }
  if (expected.empty()) {
    Skip("the reader sent no event");
  }
  const std::vector<std::string>& scripts = session.heard.scripts;
  const auto [wanted, given] = std::ranges::mismatch(expected, scripts);
  if (wanted != expected.end() || given != scripts.end()) {
    Fail("SetActiveScript was called for " + (given == scripts.end() ? "nothing more" : *given) +
         " instead of " + (wanted == expected.end() ? "nothing more" : *wanted));
  }
}

/// Calls Shutdown during a delivery, on the reader's thread or on another one.
/// @returns whether there was such a delivery.
bool ShutDownWithin(const CheckContext& context, const std::string& operation, bool onItsThread) {
  // Longer than a module takes that does not wait for the delivery.
  constexpr std::chrono::milliseconds rest(50);
  const std::string call = onItsThread
                               ? "Shutdown, called from within " + operation + ","
                               : "Shutdown, called by another thread during " + operation + ",";
  std::promise<void> started;
  std::promise<void> begun;
  std::promise<bool> returned;  // whether the delivery was still under way
  std::atomic<bool> delivering = true;
  std::thread other;
  SessionWitness host;
  const LoadedModule module(context.library, &host);
  host.ActWithin(operation, [&] {
    started.get_future().wait_for(rest);
    begun.set_value();
    if (onItsThread) {
      module->Shutdown();
      returned.set_value(false);
      return;
    }
    std::promise<void> calling;
    other = std::thread([&] {
      calling.set_value();
      module->Shutdown();
      returned.set_value(delivering);
    });
    // A busy machine may take long to start a thread.
    calling.get_future().wait();
    std::this_thread::sleep_for(rest);
    delivering = false;
  });
  StartOrSkip(module, host, context);
  started.set_value();
  if (begun.get_future().wait_for(context.patience / 4) != std::future_status::ready) {
    module->Shutdown();
    return false;
  }
  std::future<bool> early = returned.get_future();
  if (early.wait_for(context.patience / 2) != std::future_status::ready) {
    Fail(call + " does not return");
  }
  if (early.get()) {
    Fail(call + " returns before the delivery has ended");
  }
  if (other.joinable()) {
    other.join();
  }
  RequireResult("Shutdown after one from within a delivery", ResultSuccess, module->Shutdown());
  return true;
}

constexpr Check Checks[] = {
    // Only a reader that plays session files can be made to refuse. Whether this
    // one does shows in what it delivers: with the file a session to its end,
    // without it nothing.
    {"reader-refuses", "Initialise answers 13 to a reader that refuses, and starts one later",
     [](const CheckContext& context) {
       SessionWitness trial;
       {
         const LoadedModule module(context.library, &trial);
         if (!Play(module, trial, context).complete) {
           Skip("the module's reader does not play session files");
         }
       }

       SessionWitness host;
       const LoadedModule module(context.library, &host);
       const std::int32_t refused = host.Start(module, context.missingSession, context.settings);
       if (refused == ResultSuccess) {
         const bool plays = host.WaitForEnd(context.patience / 4);
         module->Shutdown();
         if (plays) {
           Skip("the module's reader starts without the session file");
         }
       }
       RequireResult("Initialise of a reader that refuses", ResultReaderNotStarted, refused);
       RequireResult("Initialise of a reader that starts, after one that refused,", ResultSuccess,
                     host.Start(module, context.session, context.settings));
       const bool complete = host.WaitForEnd(context.patience);
       module->Shutdown();
       if (!complete) {
         Fail("the session does not come to its end after a start that was refused");
       }
     }},

    {"shutdown-any-time", "Shutdown answers 0 without Initialise, and twice",
     [](const CheckContext& context) {
       SessionWitness host;
       const LoadedModule module(context.library, &host);
       module->SetHost(&host);
       RequireResult("Shutdown without Initialise", ResultSuccess, module->Shutdown());
       RequireResult("Shutdown a second time, without Initialise,", ResultSuccess,
                     module->Shutdown());
       if (host.Start(module, context.session, context.settings) == ResultSuccess) {
         host.WaitForDelivery(context.patience);
       }
       RequireResult("Shutdown after Initialise", ResultSuccess, module->Shutdown());
       RequireResult("Shutdown a second time", ResultSuccess, module->Shutdown());
     }},

    {"shutdown-is-final", "nothing is delivered once Shutdown has returned",
     [](const CheckContext& context) {
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
     }},

    {"shutdown-in-delivery", "Shutdown returns while an item or an event is being delivered",
     [](const CheckContext& context) {
       int deliveries = 0;
       for (const char* const operation : {"SendEvent", "SendData"}) {
         for (const bool onItsThread : {false, true}) {
           deliveries += ShutDownWithin(context, operation, onItsThread) ? 1 : 0;
         }
       }
       if (deliveries == 0) {
         Skip("nothing was delivered" + WithinPatience(context));
       }
     }},

    {"second-start", "Initialise starts the reader again after Shutdown",
     [](const CheckContext& context) {
       SessionWitness first;
       SessionWitness second;
       const LoadedModule module(context.library, &first);
       StartOrSkip(module, first, context);
       first.WaitForDelivery(context.patience / 4);
       module->Shutdown();
       const Testimony before = first.Heard();

       RequireResult("Initialise after Shutdown", ResultSuccess,
                     second.Start(module, context.session, context.settings));
       second.WaitForDelivery(context.patience);
       module->Shutdown();
       const Testimony after = second.Heard();
       if (before.documents + static_cast<int>(before.events.size()) > 0 && after.documents == 0 &&
           after.events.empty()) {
         Fail("nothing is delivered after the second Initialise" + WithinPatience(context));
       }
     }},

    {"calls", "no reserved operation is called; log lines have a tag, a text and a known level",
     [](const CheckContext& context) {
       SessionWitness host;
       const LoadedModule module(context.library, &host);
       Exercise(module);
       host.Start(module, context.missingSession, context.settings);
       module->Shutdown();
       if (host.Start(module, context.session, context.settings) == ResultSuccess) {
         host.WaitForEnd(context.patience);
       }
       module->Shutdown();
       if (const std::string fault = host.Heard().callFault; !fault.empty()) {
         Fail(fault);
       }
     }},

    {"session-memory", "documents leave no memory behind",
     [](const CheckContext& context) {
       constexpr int warmUp = 2;
       constexpr int rounds = 4;
       constexpr std::size_t tolerance = std::size_t{rounds} * 32768;
       SessionWitness logger;
       const LoadedModule module(context.library, &logger);
       int documents = 0;
       std::size_t before = 0;
       for (int i = 0; i < warmUp + rounds; ++i) {
         if (i == warmUp) {
           before = MemoryInUse();
           documents = 0;
         }
         SessionWitness host;
         if (host.Start(module, context.manyDocuments, context.settings) != ResultSuccess) {
           Skip("the reader did not start, or not again");
         }
         const bool complete = host.WaitForEnd(context.patience);
         module->Shutdown();
         const Testimony heard = host.Heard();
         WarnOfSilence(heard, context);
         if (!complete) {
           Skip("the module's reader does not play session files");
         }
         documents += heard.documents;
       }
       if (const std::size_t after = MemoryInUse(); after > before + tolerance) {
         Fail(std::to_string(documents) + " documents left " + std::to_string(after - before) +
              " bytes behind");
       }
     }},

    {"session-brackets", "begin and end signals of a session are balanced",
     [](const CheckContext& context) {
       const Testimony heard = PlayDocuments(context).heard;
       if (!heard.bracketFault.empty()) {
         Fail(heard.bracketFault);
       }
       if (heard.documents == 0 && heard.items > 0) {
         Fail("items came, but no BeginData");
       }
     }},

    // A session may well have documents without items; the one of this program's own
    // has not. A device that plays no session has documents of its own.
    {"session-items", "names, types, lengths and properties are those of the interface",
     [](const CheckContext& context) {
       const auto [heard, complete] = PlayDocuments(context);
       if (!heard.itemFault.empty()) {
         Fail(heard.itemFault);
       }
       if (heard.items == 0 && context.isBuiltIn && complete) {
         Fail("documents came, but no items");
       }
     }},

    {"session-events", "each event comes after a ReportError and before a ReportState",
     [](const CheckContext& context) {
       {
         SessionWitness host;
         const LoadedModule module(context.library, &host);
         host.Start(module, context.missingSession, context.settings);
         module->Shutdown();
         if (host.Heard().states == 0) {
           Fail("Initialise did not report the reader's state");
         }
       }
       SessionWitness host;
       const LoadedModule module(context.library, &host);
       const Testimony heard = Play(module, host, context).heard;
       WarnOfSilence(heard, context);
       if (!heard.eventFault.empty()) {
         Fail(heard.eventFault);
       }
     }},

    {"session-actions", "each event runs its condition's actions, in their order",
     [](const CheckContext& context) {
       SessionWitness host;
       const LoadedModule module(context.library, &host);
       AddScripts(module);
       RequireScripts(Play(module, host, context), {":first", ":second"}, context);
     }},

    {"failed-actions", "a script that is refused keeps the condition's others from running",
     [](const CheckContext& context) {
       SessionWitness host;
       const LoadedModule module(context.library, &host);
       AddScripts(module);
       host.RefuseScripts();
       RequireScripts(Play(module, host, context), {":first"}, context);
     }},
};

}  // namespace

std::span<const Check> SessionChecks() { return Checks; }

}  // namespace conduit
