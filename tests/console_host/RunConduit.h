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
/// @param outputFile  takes the output, which is then not in the outcome
Outcome RunConduit(const std::vector<std::string>& arguments, const std::string& script = "",
                   const Interruption& interruption = {}, const char* outputFile = nullptr);
