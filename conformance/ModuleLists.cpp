#include "conformance/ModuleLists.h"

#include <limits>
#include <utility>

#include "conformance/Verdict.h"

namespace conduit {

void RequireNothingWritten(const LoadedModule& module, ListReader read, std::int32_t count,
                           const std::string& operation) {
  const auto require = [&](const ListEntry& entry, const std::string& arguments) {
    if (entry.name || entry.value) {
      Fail(operation + " writes a result for " + arguments);
    }
  };
  for (const std::int32_t index : {-1, count, std::numeric_limits<std::int32_t>::max(),
                                   std::numeric_limits<std::int32_t>::min()}) {
    ListEntry entry;
    ((*module).*read)(index, &entry.name, &entry.value);
    require(entry, "index " + std::to_string(index) + " of " + std::to_string(count));
  }
  ListEntry entry;
  ((*module).*read)(0, &entry.name, nullptr);
  ((*module).*read)(0, nullptr, &entry.value);
  require(entry, "a null pointer beside it");
}

std::vector<std::string> ParameterNames(const LoadedModule& module) {
  std::vector<std::string> names;
  for (ListedParameter& parameter : module.Parameters()) {
    names.push_back(std::move(parameter.name));
  }
  return names;
}

}  // namespace conduit
