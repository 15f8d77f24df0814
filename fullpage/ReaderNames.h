#pragma once

#include <cstdint>

#include "interfaces/ItemType.h"
#include "interfaces/ReaderDataType.h"
#include "interfaces/ReaderEventCode.h"
#include "interfaces/ReaderState.h"
#include "runtime/BaseString.h"

namespace conduit {

// What the host is told for each of the reader's codes. Pure functions; a code
// without a name gives the empty text. [any thread]

/// The name of a plain item; of a barcode or a record it is empty.
/// @param itemType  receives the item's type when the item has a name, and is
///                  left as it is otherwise
BaseString<char> GetItemName(ReaderDataType type, ItemType* itemType);

/// The name of a barcode; empty for every type that is none.
BaseString<char> GetBarcodeItemName(ReaderDataType type);

/// The item type of a barcode by the format code of its record.
ItemType GetBarcodeItemType(std::int32_t format);

BaseString<char> GetEventName(ReaderEventCode code);

BaseString<char> GetStateText(ReaderState state);

}  // namespace conduit
