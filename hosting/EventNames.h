#pragma once

#include <cstddef>
#include <string_view>

#include <conduit/ReaderEventCode.h>

namespace conduit {

/// Whether a host was sent the name of this event.
inline bool IsEvent(std::string_view name, ReaderEventCode code) {
  return name == ReaderEventNames[static_cast<std::size_t>(code)];
}

}  // namespace conduit
