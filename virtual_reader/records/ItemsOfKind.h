#pragma once

#include <vector>

#include <conduit/ReaderItem.h>

namespace conduit {

/// The rows of ReaderItems of one kind, in their order.
inline std::vector<ReaderItem> ItemsOfKind(ReaderItemKind kind) {
  std::vector<ReaderItem> items;
  for (const ReaderItem& item : ReaderItems) {
    if (item.kind == kind) {
      items.push_back(item);
    }
  }
  return items;
}

}  // namespace conduit
