#pragma once

namespace conduit {

/// Starts a child of this process that does nothing and does not end.
void StartIdleProcess();

}  // namespace conduit
