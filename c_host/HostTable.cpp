#include "c_host/HostTable.h"

#include <utility>

namespace conduit {

HostTable& HostTable::Instance() {
  static auto* const table = new HostTable;
  return *table;
}

conduit_host HostTable::Add(const conduit_host_callbacks& callbacks) {
  const auto host = std::make_shared<Host>(callbacks);
  const std::lock_guard lock(mutex);
  hosts.emplace(++last, host);
  return last;
}

std::shared_ptr<Host> HostTable::Find(conduit_host handle) const {
  const std::lock_guard lock(mutex);
  const auto found = hosts.find(handle);
  return found != hosts.end() ? found->second : nullptr;
}

void HostTable::Remove(conduit_host handle) {
  std::shared_ptr<Host> removed;  // ends behind the lock
  const std::lock_guard lock(mutex);
  if (const auto found = hosts.find(handle); found != hosts.end()) {
    removed = std::move(found->second);
    hosts.erase(found);
  }
}

}  // namespace conduit
