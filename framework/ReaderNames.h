#pragma once

#include <cstdint>

#include <conduit/ItemType.h>
#include <conduit/ReaderEventCode.h>
#include <conduit/ReaderState.h>

namespace conduit {

// Map the reader's codes to the host's texts and item types. Pure functions; a code
// without a name has the empty text. [any thread]

/// Returns the item type of a barcode by the format code of its record.
ItemType GetBarcodeItemType(std::int32_t format);

const char* GetEventName(ReaderEventCode code);

const char* GetStateText(ReaderState state);

}  // namespace conduit
