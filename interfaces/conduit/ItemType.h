#pragma once  // self-contained; C++17

#include <cstdint>

namespace conduit {

/// The kind of data of an item, sent to the host with it.
///
/// Barcodes use all of 0 to 5, by the format of the decoded data; every other
/// item is text or image. A plain integer rather than an enumeration, because
/// the binary interface passes one.
using ItemType = std::int32_t;

inline constexpr ItemType ItemTypeUnknown = 0;
inline constexpr ItemType ItemTypeBarcodeFormat6 = 1;
inline constexpr ItemType ItemTypeBarcodeFormat9 = 2;
inline constexpr ItemType ItemTypeBarcodeFormat10 = 3;
inline constexpr ItemType ItemTypeText = 4;
inline constexpr ItemType ItemTypeImage = 5;  ///< an image, or binary data of a barcode

}  // namespace conduit
