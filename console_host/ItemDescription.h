#pragma once

#include <string>

#include "hosting/RunListener.h"

namespace conduit {

/// An item's data on one line, for people: the text, or what is known of bytes
/// that are none.
std::string Described(const ItemReceived& item);

}  // namespace conduit
