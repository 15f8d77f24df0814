#include "virtual_reader/barcodes/SymbolDecoding_zxing.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <iterator>
#include <new>
#include <utility>

#include "virtual_reader/barcodes/AztecBits.h"

namespace conduit {
namespace {

using ZXing::BarcodeFormat;

#if ZXING_VERSION_MAJOR >= 2
using DecoderOptions = ZXing::ReaderOptions;
#else
using DecoderOptions = ZXing::DecodeHints;
#endif

constexpr struct {
  BarcodeFormat format;
  ReaderDataType type;
} Symbologies[] = {
    {BarcodeFormat::Code39, ReaderDataType::Barcode3Of9},
    {BarcodeFormat::Code128, ReaderDataType::Barcode128},
    {BarcodeFormat::ITF, ReaderDataType::BarcodeInterleaved2Of5},
    {BarcodeFormat::PDF417, ReaderDataType::BarcodePdf417},
    {BarcodeFormat::Aztec, ReaderDataType::BarcodeAztec},
    {BarcodeFormat::QRCode, ReaderDataType::BarcodeQr},
    {BarcodeFormat::DataMatrix, ReaderDataType::BarcodeDataMatrix},
};

ReaderDataType TypeOf(const ZXing::Result& result) {
  return std::find_if(std::begin(Symbologies), std::end(Symbologies),
                      [&](const auto& row) { return row.format == result.format(); })
      ->type;
}

std::string BytesOf(const ZXing::Result& result) {
  return {result.bytes().begin(), result.bytes().end()};
}

/// Keeps what the symbol holds. ZXing-C++ 1.4 reads on beyond the data bits of an Aztec
/// Code that end within a shift, as padding may, and delivers what lies there in memory.
void KeepWhatAztecHolds(const ZXing::Result& result, PageFinding* finding) {
#if ZXING_VERSION_MAJOR < 2
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#endif
  // Deprecated in favour of bytes(), which is what cannot be trusted here.
  const std::string bits(result.rawBytes().begin(), result.rawBytes().end());
  const auto count = static_cast<std::size_t>(std::max(0, result.numBits()));
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
  AztecMessage message = ReadAztecBits(bits, std::min(count, 8 * bits.size()));
  using End = AztecMessage::End;
  const bool isWhole = finding->data == message.data;
  // The decoder keeps the place of a part of a message to itself.
  const bool isPart = message.end == End::Complete && result.isPartOfSequence() &&
                      message.data.ends_with(finding->data);
  if (message.end == End::InPadding && finding->data.starts_with(message.data)) {
    finding->data = std::move(message.data);
  } else if (!isWhole && !isPart) {
    finding->data.clear();
    finding->failure = BrokenRules;
  }
#else
  static_cast<void>(result);
  static_cast<void>(finding);
#endif
}

ZXing::Results Decode(const ZXing::ImageView& view, ZXing::BarcodeFormats formats, bool failures) {
  auto options = DecoderOptions().setFormats(formats).setReturnErrors(failures);
  if (!DecoderFindsAll && formats.testFlags(Linear)) {
    // ZXing-C++ 1.4 compares what it finds with its results so far, and for two linear
    // ones of the same bytes, or of which one has failed, asserts that the former was
    // seen on one line only. That ends the process where assertions are on, as in
    // Debian's build: on most pages as soon as the page is searched a second time at a
    // third of its size, and on any with two equal labels. One result is compared with
    // none.
    options.setTryDownscale(false).setMaxNumberOfSymbols(1);
  }
  return ZXing::ReadBarcodes(view, options);
}

}  // namespace

std::vector<ReaderDataType> TypesOf(ZXing::BarcodeFormats formats) {
  std::vector<ReaderDataType> types;
  for (const auto& row : Symbologies) {
    if (formats.testFlag(row.format)) {
      types.push_back(row.type);
    }
  }
  return types;
}

bool IsLinear(ReaderDataType type) {
  return std::any_of(std::begin(Symbologies), std::end(Symbologies), [&](const auto& row) {
    return row.type == type && ZXing::BarcodeFormats(Linear).testFlag(row.format);
  });
}

PageFinding FindingOf(const ZXing::Result& result, const Rectangle& area) {
  PageFinding finding = {TypeOf(result), {}, area, {}};
  const ZXing::Error& error = result.error();
  if (!result.isValid()) {
    finding.failure = error == ZXing::Error::Checksum ? "its check characters do not match"
                      : error == ZXing::Error::Format ? BrokenRules
                                                      : "it uses what the decoder does not support";
    return finding;
  }
  finding.data = BytesOf(result);
  if (finding.type == ReaderDataType::BarcodeAztec) {
    KeepWhatAztecHolds(result, &finding);
  }
  return finding;
}

Rectangle BoundsOf(const ZXing::Position& corners) {
  const auto [minX, maxX] = std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
  const auto [minY, maxY] = std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
  return {minX, minY, maxX - minX + 1, maxY - minY + 1};
}

ZXing::ImageView ViewOf(const PageImage& image) {
  return {image.luminance.data(), image.width, image.height, ZXing::ImageFormat::Lum};
}

DecodedSymbols DecodeSymbols(const ZXing::ImageView& view, ZXing::BarcodeFormats formats,
                             bool failures) {
  if constexpr (DecoderFindsAll) {
    return {Decode(view, formats, failures), {}};
  }
  // For a symbol that breaks the rules of its data, ZXing-C++ 1.4 throws, and whatever else it
  // has found is lost.
  try {
    return {Decode(view, formats, failures), {}};
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    if (formats.count() == 1) {
      return {{}, formats};
    }
  }
  DecodedSymbols all;
  for (const ZXing::BarcodeFormat format : formats) {
    DecodedSymbols one = DecodeSymbols(view, format, failures);
    std::move(one.results.begin(), one.results.end(), std::back_inserter(all.results));
    all.broken |= one.broken;
  }
  return all;
}

ZXing::Results DecodeLine(const ZXing::ImageView& view, bool rotate) {
  return ZXing::ReadBarcodes(view, DecoderOptions()
                                       .setFormats(Linear)
                                       .setTryRotate(rotate)
                                       .setTryDownscale(false)
                                       .setMaxNumberOfSymbols(1)
                                       .setMinLineCount(1));
}

ZXing::Results DecodeScatteredLines(const ZXing::ImageView& view) {
  ZXing::Results one = DecodeLine(view, false);
  if (one.empty()) {
    return one;
  }
  const int line = one.front().position()[0].y;
  for (const auto& [top, bottom] : {std::pair{0, line - 1}, std::pair{line + 2, view.height()}}) {
    if (top >= bottom) {
      continue;
    }
    const ZXing::Results other =
        DecodeLine(view.cropped(0, top, view.width(), bottom - top), false);
    if (!other.empty() && other.front().format() == one.front().format() &&
        other.front().bytes() == one.front().bytes()) {
      return one;
    }
  }
  return {};
}

}  // namespace conduit
