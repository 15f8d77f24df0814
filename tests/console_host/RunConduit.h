#pragma once

#include <string>
#include <vector>

#include "tests/support/StartedProgram.h"

/// What the program left behind.
struct Outcome {
  int status;
  std::string output;
  std::string trouble;
};

struct Interruption {
  const EndRequest* request = nullptr;
  std::string after;      ///< what the output holds when it is sent
  bool repeated = false;  ///< until the program ends
};

/// Runs `conduit` with the arguments and the fake module's script.
/// @param outputFile  takes the output, which is then not in the outcome
Outcome RunConduit(const std::vector<std::string>& arguments, const std::string& script = "",
                   const Interruption& interruption = {}, const char* outputFile = nullptr);
