#include "fullpage/ReaderNames.h"

#include <algorithm>
#include <iterator>

#include "runtime/EntryAt.h"

namespace conduit {
namespace {

/// The row of a table that stands for a code, or null.
template <class Row, std::size_t Size>
const Row* FindRow(const Row (&table)[Size], ReaderDataType type) {
  const Row* const row =
      std::find_if(std::begin(table), std::end(table),
                   [type](const Row& candidate) { return candidate.type == type; });
  return row != std::end(table) ? row : nullptr;
}

}  // namespace

BaseString<char> GetItemName(ReaderDataType type, ItemType* itemType) {
  const ReaderItemName* const row = FindRow(ReaderItemNames, type);
  if (row == nullptr) {
    return {};
  }
  *itemType = row->itemType;
  return row->name;
}

BaseString<char> GetBarcodeItemName(ReaderDataType type) {
  const ReaderBarcodeName* const row = FindRow(ReaderBarcodeNames, type);
  return row != nullptr ? row->name : "";
}

ItemType GetBarcodeItemType(std::int32_t format) {
  return EntryAt(ReaderBarcodeItemTypes, format, ItemTypeUnknown);
}

BaseString<char> GetEventName(ReaderEventCode code) {
  return EntryAt(ReaderEventNames, static_cast<std::int32_t>(code), "");
}

BaseString<char> GetStateText(ReaderState state) {
  return EntryAt(ReaderStateNames, static_cast<std::int32_t>(state), "");
}

}  // namespace conduit
