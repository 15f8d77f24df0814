#include "framework/ReaderNames.h"

#include "runtime/EntryAt.h"
#include <conduit/ReaderItem.h>

namespace conduit {

ItemType GetBarcodeItemType(std::int32_t format) {
  return EntryAt(ReaderBarcodeItemTypes, format, ItemTypeUnknown);
}

const char* GetEventName(ReaderEventCode code) {
  return EntryAt(ReaderEventNames, static_cast<std::int32_t>(code), "");
}

const char* GetStateText(ReaderState state) {
  return EntryAt(ReaderStateNames, static_cast<std::int32_t>(state), "");
}

}  // namespace conduit
