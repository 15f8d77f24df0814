#pragma once

#define ZX_USE_UTF8 1
#include <ZXing/ReadBarcode.h>
#if __has_include(<ZXing/Version.h>)
#include <ZXing/Version.h>
#else
#include <ZXing/ZXVersion.h>
#endif

#include "virtual_reader/barcodes/PageFindings.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// ZXing-C++ 2 finds several symbols of every kind in one call, Aztec Codes anywhere and
/// light symbols on dark. Of the finders here the one for bars alone still pays then: of 89
/// symbols on drawn ID-1 pages the decoder reads 57 alone and 86 with it, and the others add
/// none. What 1.4 is guarded against is not compiled in.
inline constexpr bool DecoderFindsAll = ZXING_VERSION_MAJOR >= 2;

inline constexpr auto Linear =
    ZXing::BarcodeFormat::Code39 | ZXing::BarcodeFormat::Code128 | ZXing::BarcodeFormat::ITF;
/// Stacked and matrix symbols.
inline constexpr auto Matrix = ZXing::BarcodeFormat::PDF417 | ZXing::BarcodeFormat::Aztec |
                               ZXing::BarcodeFormat::QRCode | ZXing::BarcodeFormat::DataMatrix;

inline constexpr const char* BrokenRules = "it breaks the rules of its symbology";

/// Returns the host's types of these formats, in the order of the table of symbologies.
std::vector<ReaderDataType> TypesOf(ZXing::BarcodeFormats formats);

bool IsLinear(ReaderDataType type);

/// Returns the finding without the data of a symbol that cannot be decoded: they do not belong
/// into a log.
PageFinding FindingOf(const ZXing::Result& result, const Rectangle& area);

Rectangle BoundsOf(const ZXing::Position& corners);

ZXing::ImageView ViewOf(const PageImage& image);

struct DecodedSymbols {
  ZXing::Results results;
  ZXing::BarcodeFormats broken;  ///< those of which a symbol makes the decoder throw
};

/// Decodes what the decoder finds of each format that can be decoded.
/// @param failures  also returns symbols that are there and cannot be decoded
DecodedSymbols DecodeSymbols(const ZXing::ImageView& view, ZXing::BarcodeFormats formats,
                             bool failures);

/// Decodes a linear symbol from a single line across it, which may be chance.
/// @param rotate  also looks for bars that are level
ZXing::Results DecodeLine(const ZXing::ImageView& view, bool rotate);

/// Decodes a linear symbol with upright bars of which two lines at any distance say the same.
/// Asked for a single result, the decoder itself requires two lines beside each other, which
/// blur and noise may not grant.
ZXing::Results DecodeScatteredLines(const ZXing::ImageView& view);

}  // namespace conduit
