#pragma once  // stands alone in C++17

/// The version of the interface between hosts, modules and reader libraries. The major
/// number goes up when what was built against an earlier one must be built again or
/// changed; the minor one when something is added.
#define CONDUIT_INTERFACE_VERSION_MAJOR 1
#define CONDUIT_INTERFACE_VERSION_MINOR 1

/// As one number, to be compared: 1001 for 1.1.
#define CONDUIT_INTERFACE_VERSION \
  (CONDUIT_INTERFACE_VERSION_MAJOR * 1000 + CONDUIT_INTERFACE_VERSION_MINOR)

namespace conduit {

inline constexpr int InterfaceVersion = CONDUIT_INTERFACE_VERSION;

}  // namespace conduit
