#pragma once

#include <string>
#include <vector>

/// What the program left behind.
struct Outcome {
  int status;
  std::string output;
  std::string trouble;
};

struct Interruption {
  int signal;
  std::string after;  ///< what the output holds when the signal is sent
};

/// Runs `conduit` with the arguments and the fake module's script.
Outcome RunConduit(const std::vector<std::string>& arguments, const std::string& script = "",
                   const Interruption& interruption = {});
