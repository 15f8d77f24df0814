#define ZX_USE_UTF8 1
#include <ZXing/ReadBarcode.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <iterator>
#include <numbers>
#include <utility>

#include "virtual_reader/search/PageAreas.h"
#include "virtual_reader/search/PageCut.h"
#include "virtual_reader/search/PageSearch.h"

namespace conduit {
namespace {

using ZXing::BarcodeFormat;

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

constexpr auto Linear = BarcodeFormat::Code39 | BarcodeFormat::Code128 | BarcodeFormat::ITF;
constexpr auto Matrix = BarcodeFormat::PDF417 | BarcodeFormat::Aztec | BarcodeFormat::QRCode |
                        BarcodeFormat::DataMatrix;

/// The decoder looks for these around the middle of an image only.
constexpr auto FoundInTheMiddle = BarcodeFormat::Aztec | BarcodeFormat::DataMatrix;

constexpr auto MadeOfBars = Linear | BarcodeFormat::PDF417;

struct Found {
  ZXing::Result result;
  PageArea area;
};

PageArea AreaOf(const ZXing::Position& corners) {
  const auto [minX, maxX] = std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
  const auto [minY, maxY] = std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
  return {minX, minY, maxX - minX + 1, maxY - minY + 1};
}

bool IsSame(const Found& a, const Found& b) {
  return a.result.format() == b.result.format() && Overlap(a.area, b.area);
}

ZXing::ImageView ViewOf(const PageImage& image) {
  return {image.light.data(), image.width, image.height, ZXing::ImageFormat::Lum};
}

/// @param failures  also gives what is there and cannot be decoded
ZXing::Results Decode(const ZXing::ImageView& view, ZXing::BarcodeFormats formats, bool failures) {
  // ZXing-C++ 1.4 searches an image a second time at a third of its size and compares
  // what it finds with the first time's results. Comparing linear ones asserts that
  // each was seen on one line only, which ends the process on any page with a linear
  // symbol where assertions are on, as in Debian's build.
  const bool comparable = !formats.testFlags(Linear);
  return ZXing::ReadBarcodes(
      view, ZXing::DecodeHints().setFormats(formats).setReturnErrors(failures).setTryDownscale(
                comparable));
}

/// What one page shows, found step by step.
class Search {
 public:
  explicit Search(const PageImage& image) : page(image) {}

  void Run() {
    const PageAreas areas = FindAreas(page);
    if (areas.printed.width == 0) {
      return;
    }
    LookIn(areas.printed, Matrix);
    LookIn(areas.printed, Linear);
    for (const SymbolArea& isolated : areas.isolated) {
      if (isolated.inverted) {
        LookInCut(isolated, Matrix);
      } else if (!IsKnown(isolated.area)) {
        LookIn(isolated.area.Around(), FoundInTheMiddle);
      }
    }
    for (const SymbolArea& bullsEye : areas.bullsEyes) {
      if (!IsKnown(bullsEye.area)) {
        LookInCut(bullsEye, BarcodeFormat::Aztec);
      }
    }
    for (const SymbolArea& bars : areas.bars) {
      LookAt(bars);
    }
  }

  std::vector<Found> Take() { return std::move(found); }

 private:
  /// The decoder takes bars for level up to here; text is, on most pages.
  static constexpr double Level = 0.05;

  void LookAt(SymbolArea bars) {
    constexpr double quarter = std::numbers::pi / 2;
    constexpr double margin = 20;  // the light that a symbol needs around itself
    if (IsKnown(bars.area)) {
      return;
    }
    bars.area.width += 2 * margin;
    bars.area.height += 2 * margin;
    if (bars.inverted || std::abs(std::remainder(bars.area.angle, quarter)) > Level) {
      LookInCut(bars, MadeOfBars);
    } else if (std::any_of(found.begin(), found.end(), [](const Found& one) {
                 return one.result.format() == BarcodeFormat::PDF417;
               })) {
      // The decoder finds all PDF417 of one direction, and then looks for no other.
      LookIn(bars.area.Around(), BarcodeFormat::PDF417);
    }
  }

  void LookIn(const PageArea& area, ZXing::BarcodeFormats formats) {
    const auto view = ViewOf(page).cropped(area.left, area.top, area.width, area.height);
    const auto add = [&](ZXing::Results results) {
      for (ZXing::Result& result : results) {
        PageArea at = AreaOf(result.position());
        at.left += area.left;
        at.top += area.top;
        Add({std::move(result), at});
      }
    };
    ZXing::Results results = Decode(view, formats, true);
    ZXing::BarcodeFormats failed;
    for (const ZXing::Result& result : results) {
      if (!result.isValid()) {
        failed |= result.format();
      }
    }
    add(std::move(results));
    // The decoder takes a line that fails for the symbol, and drops the good ones there.
    if (!failed.empty()) {
      add(Decode(view, failed, false));
    }
  }

  void LookInCut(const SymbolArea& symbol, ZXing::BarcodeFormats formats) {
    const PageCut cut(page, symbol.area, symbol.inverted);
    for (ZXing::Result& result : Decode(ViewOf(cut.Image()), formats, false)) {
      // Of a linear symbol only the lines are known on which it was read.
      const bool linear = ZXing::BarcodeFormats(Linear).testFlag(result.format());
      const PageArea at = linear ? symbol.area.Around() : cut.OnPage(AreaOf(result.position()));
      Add({std::move(result), at});
    }
  }

  /// Adds what was not found before.
  void Add(Found one) {
    const bool known = std::any_of(found.begin(), found.end(), [&](const Found& other) {
      return IsSame(one, other) && (other.result.isValid() || !one.result.isValid());
    });
    if (!known) {
      found.push_back(std::move(one));
    }
  }

  /// Whether what stands in the middle of an area was read.
  bool IsKnown(const TurnedArea& area) const {
    const PageArea around = area.Around();
    const PageArea middle = {static_cast<int>(area.middleX), static_cast<int>(area.middleY), 1, 1};
    return std::any_of(found.begin(), found.end(), [&](const Found& one) {
      const PageArea foundMiddle = {one.area.left + one.area.width / 2,
                                    one.area.top + one.area.height / 2, 1, 1};
      return one.result.isValid() && (Overlap(one.area, middle) || Overlap(foundMiddle, around));
    });
  }

  const PageImage& page;
  std::vector<Found> found;
};

/// A scan across a scratch fails where another one reads.
void DropFailuresOfWhatWasRead(std::vector<Found>* found) {
  const std::vector<Found> all = *found;
  std::erase_if(*found, [&all](const Found& one) {
    return !one.result.isValid() && std::any_of(all.begin(), all.end(), [&](const Found& other) {
      return other.result.isValid() && IsSame(one, other);
    });
  });
}

/// From top to bottom; what begins above the middle of a row's first stands in
/// the same row, from left to right.
void SortByPlace(std::vector<Found>* found) {
  std::sort(found->begin(), found->end(),
            [](const Found& a, const Found& b) { return a.area.top < b.area.top; });
  for (auto row = found->begin(); row != found->end();) {
    const int middle = row->area.top + row->area.height / 2;
    const auto end = std::find_if(std::next(row), found->end(), [middle](const Found& other) {
      return other.area.top >= middle;
    });
    std::sort(row, end, [](const Found& a, const Found& b) { return a.area.left < b.area.left; });
    row = end;
  }
}

ReaderDataType TypeOf(const ZXing::Result& result) {
  return std::find_if(std::begin(Symbologies), std::end(Symbologies),
                      [&](const auto& row) { return row.format == result.format(); })
      ->type;
}

/// Without what was read of it: that does not belong into a log.
std::string FailureOf(const Found& found) {
  const ZXing::Error& error = found.result.error();
  return "a " + BarcodeName(TypeOf(found.result)) + " at " + std::to_string(found.area.left) +
         ", " + std::to_string(found.area.top) + " cannot be decoded: " +
         (error == ZXing::Error::Checksum ? "its check characters do not match"
          : error == ZXing::Error::Format ? "it breaks the rules of its symbology"
                                          : "it uses what the decoder does not support");
}

}  // namespace

bool CanSearchPages() { return true; }

PageFindings SearchPage(const PageImage& image) {
  PageFindings findings;
  Search search(image);
  try {
    search.Run();
  } catch (const std::exception& error) {
    findings.failures.push_back(std::string("the search ended early: ") + error.what());
  }
  std::vector<Found> found = search.Take();
  DropFailuresOfWhatWasRead(&found);
  SortByPlace(&found);

  for (const Found& one : found) {
    if (one.result.isValid()) {
      const ZXing::ByteArray& bytes = one.result.bytes();
      findings.barcodes.push_back({TypeOf(one.result), {bytes.begin(), bytes.end()}});
    } else {
      findings.failures.push_back(FailureOf(one));
    }
  }
  return findings;
}

}  // namespace conduit
