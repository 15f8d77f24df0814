#pragma once

#include <string>
#include <vector>

namespace conduit {

/// What a search of one image for a machine-readable zone has found.
struct CodelineFindings {
  std::vector<std::string> lines;     ///< of a zone that was read surely; else none
  std::vector<std::string> failures;  ///< where a zone stands that was not, not what it says
};

}  // namespace conduit
