#pragma once

#include <map>
#include <memory>
#include <mutex>

#include "c_host/Host.h"

namespace conduit {

/// The hosts by their handles. [any thread]
class HostTable {
 public:
  /// The one of this process. It is never destroyed: a reader that still runs when the
  /// process ends finds its host.
  static HostTable& Instance();

  conduit_host Add(const conduit_host_callbacks& callbacks);

  /// Null when the handle has no host, or no longer.
  std::shared_ptr<Host> Find(conduit_host handle) const;
  void Remove(conduit_host handle);

 private:
  mutable std::mutex mutex;
  std::map<conduit_host, std::shared_ptr<Host>> hosts;
  conduit_host last = 0;
};

}  // namespace conduit
