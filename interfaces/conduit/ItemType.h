#pragma once  // stands alone in C++17

#include <cstdint>

namespace conduit {

/// What kind of data an item carries, as sent with it to the host.
///
/// Barcodes use all of 0 to 5, chosen by the format in which the reader
/// decoded their data; every other item is text or image. A plain integer
/// rather than an enumeration, because hosts take it as one.
using ItemType = std::int32_t;

inline constexpr ItemType ItemTypeUnknown = 0;
inline constexpr ItemType ItemTypeBarcodeFormat6 = 1;
inline constexpr ItemType ItemTypeBarcodeFormat9 = 2;
inline constexpr ItemType ItemTypeBarcodeFormat10 = 3;
inline constexpr ItemType ItemTypeText = 4;
inline constexpr ItemType ItemTypeImage = 5;  ///< an image, or binary data of a barcode

}  // namespace conduit
