#pragma once

#include <cstdint>

#include <conduit/ItemType.h>
#include <conduit/ReaderEventCode.h>
#include <conduit/ReaderState.h>

namespace conduit {

// What the host is told for each of the reader's codes. Pure functions; a code
// without a name gives the empty text. [any thread]

/// The item type of a barcode by the format code of its record.
ItemType GetBarcodeItemType(std::int32_t format);

const char* GetEventName(ReaderEventCode code);

const char* GetStateText(ReaderState state);

}  // namespace conduit
