#pragma once  // stands alone in C++17

/// The version of everything that is delivered, said here and nowhere else: the build,
/// the packages and the programs read it from these lines.
///
/// The first two numbers are those of the interface between hosts, modules and reader
/// libraries. The major one goes up when what was built against an earlier one must be
/// built again or changed; the minor one when something is added. The third goes up with
/// a release that leaves the interface as it is.
#define CONDUIT_VERSION_MAJOR 1
#define CONDUIT_VERSION_MINOR 2
#define CONDUIT_VERSION_PATCH 0

/// The interface's as one number, to be compared: 1002 for 1.2.
#define CONDUIT_INTERFACE_VERSION (CONDUIT_VERSION_MAJOR * 1000 + CONDUIT_VERSION_MINOR)

/// All three as text: "1.2.0".
#define CONDUIT_VERSION                       \
  CONDUIT_VERSION_TEXT(CONDUIT_VERSION_MAJOR) \
  "." CONDUIT_VERSION_TEXT(CONDUIT_VERSION_MINOR) "." CONDUIT_VERSION_TEXT(CONDUIT_VERSION_PATCH)
#define CONDUIT_VERSION_TEXT(number) CONDUIT_VERSION_TEXT_OF(number)
#define CONDUIT_VERSION_TEXT_OF(number) #number

namespace conduit {

inline constexpr int InterfaceVersion = CONDUIT_INTERFACE_VERSION;

}  // namespace conduit
