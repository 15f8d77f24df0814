#define ZX_USE_UTF8 1
#include <ZXing/ReadBarcode.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <iterator>
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

/// Parts of an area that the decoder takes one by one, as it needs up to four bytes a
/// pixel. They overlap by more than a symbol on a scan of 600 dpi is high.
std::vector<PageArea> BandsOf(const PageArea& area) {
  constexpr int mostPixels = 16'000'000;
  constexpr int overlap = 1000;
  const int height = std::max(2 * overlap, mostPixels / area.width);
  std::vector<PageArea> bands;
  for (int top = 0;; top += height - overlap) {
    if (top + height >= area.height) {
      bands.push_back({area.left, area.top + top, area.width, area.height - top});
      return bands;
    }
    bands.push_back({area.left, area.top + top, area.width, height});
  }
}

/// What one page shows, found step by step.
class Search {
 public:
  explicit Search(const PageImage& image)
      : page(image), pixelsLeft(std::int64_t{3} * image.width * image.height) {}

  void Run() {
    const PageAreas areas = FindAreas(page);
    if (areas.printed.width == 0) {
      return;
    }
    // What looks like one symbol comes first. The decoder gives places that are not
    // right to what it finds on a whole page that is turned for it, so that a symbol is
    // told by its bytes from one that was found before.
    for (const SymbolArea& bars : areas.bars) {
      LookAt(bars);
    }
    for (const SymbolArea& bullsEye : areas.bullsEyes) {
      LookAround(bullsEye);
    }
    for (const PageArea& band : BandsOf(areas.printed)) {
      LookOnPage(band, Matrix);
      LookOnPage(band, Linear);
    }
    for (const SymbolArea& isolated : areas.isolated) {
      if (isolated.inverted) {
        LookInCut(isolated, Matrix);
      } else if (!IsKnown(isolated.area)) {
        for (Found& one : LookIn(isolated.area.Around(), FoundInTheMiddle)) {
          Add(std::move(one));
        }
      }
    }
  }

  std::vector<Found> Take() { return std::move(found); }

 private:
  /// The decoder takes what stands around a symbol for a part of it, and knows how to
  /// read one that is turned by a few degrees no better than PDF417.
  void LookAround(SymbolArea bullsEye) {
    constexpr double ringsAcross = 7;
    const double ring = bullsEye.area.width / ringsAcross;
    for (const int modules : {32, 48, 80, 160}) {  // symbols are 15 to 151 wide
      if (IsKnown(bullsEye.area)) {
        return;
      }
      bullsEye.area.width = modules * ring;
      bullsEye.area.height = modules * ring;
      LookInCut(bullsEye, BarcodeFormat::Aztec);
    }
  }

  void LookAt(SymbolArea bars) {
    constexpr double margin = 20;  // the light that a symbol needs around itself
    if (IsKnown(bars.area)) {
      return;
    }
    bars.area.width += 2 * margin;
    bars.area.height += 2 * margin;
    LookInCut(bars, MadeOfBars);
    if (!IsKnown(bars.area)) {
      bars.inverted = !bars.inverted;  // what was taken for its margin may be another thing
      LookInCut(bars, MadeOfBars);
    }
  }

  void LookOnPage(const PageArea& area, ZXing::BarcodeFormats formats) {
    const std::vector<Found> before = found;
    for (Found& one : LookIn(area, formats)) {
      const bool known = std::any_of(before.begin(), before.end(), [&one](const Found& other) {
        return one.result.isValid() && other.result.isValid() &&
               one.result.format() == other.result.format() &&
               one.result.bytes() == other.result.bytes();
      });
      if (!known) {
        Add(std::move(one));
      }
    }
  }

  std::vector<Found> LookIn(const PageArea& area, ZXing::BarcodeFormats formats) const {
    const auto view = ViewOf(page).cropped(area.left, area.top, area.width, area.height);
    ZXing::Results results = Decode(view, formats, true);
    ZXing::BarcodeFormats failed;
    for (const ZXing::Result& result : results) {
      if (!result.isValid()) {
        failed |= result.format();
      }
    }
    // The decoder takes a line that fails for the symbol, and drops the good ones there.
    if (!failed.empty()) {
      ZXing::Results good = Decode(view, failed, false);
      std::move(good.begin(), good.end(), std::back_inserter(results));
    }
    std::vector<Found> here;
    for (ZXing::Result& result : results) {
      PageArea at = AreaOf(result.position());
      at.left += area.left;
      at.top += area.top;
      here.push_back({std::move(result), at});
    }
    return here;
  }

  void LookInCut(const SymbolArea& symbol, ZXing::BarcodeFormats formats) {
    constexpr double mostPixels = 16e6;
    const double pixels = symbol.area.width * symbol.area.height;
    if (pixels > mostPixels || pixels > static_cast<double>(pixelsLeft)) {
      return;
    }
    pixelsLeft -= static_cast<std::int64_t>(pixels);
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
  std::int64_t pixelsLeft;  ///< to cut out: bounds the time that a page full of patterns takes
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

std::vector<ReaderDataType> BarcodesNotLookedFor() {
  std::vector<ReaderDataType> missing;
  for (const ReaderBarcodeName& row : ReaderBarcodeNames) {
    if (std::none_of(std::begin(Symbologies), std::end(Symbologies),
                     [&row](const auto& symbology) { return symbology.type == row.type; })) {
      missing.push_back(row.type);
    }
  }
  return missing;
}

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
