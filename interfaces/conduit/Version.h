#pragma once  // self-contained; C++17

/// The version of the whole delivery, defined only here: the build, the packages and the
/// programs read it from these lines.
///
/// Major and minor version the interface between hosts, modules and reader libraries. The
/// major number rises when programs built against an earlier version must be rebuilt or
/// changed, the minor number when something is added, the patch number with a release that
/// leaves the interface unchanged.
#define CONDUIT_VERSION_MAJOR 1
#define CONDUIT_VERSION_MINOR 2
#define CONDUIT_VERSION_PATCH 0

/// The interface version as one comparable number: 1002 for 1.2.
#define CONDUIT_INTERFACE_VERSION (CONDUIT_VERSION_MAJOR * 1000 + CONDUIT_VERSION_MINOR)

/// The full version as text: "1.2.0".
#define CONDUIT_VERSION                       \
  CONDUIT_VERSION_TEXT(CONDUIT_VERSION_MAJOR) \
  "." CONDUIT_VERSION_TEXT(CONDUIT_VERSION_MINOR) "." CONDUIT_VERSION_TEXT(CONDUIT_VERSION_PATCH)
#define CONDUIT_VERSION_TEXT(number) CONDUIT_VERSION_TEXT_OF(number)
#define CONDUIT_VERSION_TEXT_OF(number) #number

namespace conduit {

inline constexpr int InterfaceVersion = CONDUIT_INTERFACE_VERSION;

}  // namespace conduit
