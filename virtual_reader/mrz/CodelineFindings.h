#pragma once

#include <string>
#include <vector>

namespace conduit {

/// The result of a search of one image for a machine-readable zone (MRZ).
struct CodelineFindings {
  std::vector<std::string> lines;     ///< of an MRZ that was read with confidence; else none
  std::vector<std::string> failures;  ///< where another MRZ is, without its text
};

}  // namespace conduit
