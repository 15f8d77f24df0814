#include "conformance/Check.h"

#include <algorithm>

namespace conduit {

const std::vector<Check>& AllChecks() {
  static const std::vector<Check> all = [] {
    std::vector<Check> checks;
    for (const std::span<const Check> part :
         {LibraryChecks(), ConfigurationChecks(), SessionChecks()}) {
      checks.insert(checks.end(), part.begin(), part.end());
    }
    return checks;
  }();
  return all;
}

const Check* FindCheck(const std::string& name) {
  const auto found =
      std::ranges::find_if(AllChecks(), [&](const Check& check) { return check.name == name; });
  return found == AllChecks().end() ? nullptr : &*found;
}

}  // namespace conduit
