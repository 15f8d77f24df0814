#pragma once

#include <string>

namespace conduit {

/// A parameter that the user of the checks sets.
struct Setting {
  std::string name;
  std::string value;
};

}  // namespace conduit
