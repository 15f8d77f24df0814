#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <utility>

#include "virtual_reader/barcodes/BullsEyeFinder.h"
#include "virtual_reader/barcodes/LinearFinder.h"
#include "virtual_reader/barcodes/PageSearch.h"
#include "virtual_reader/barcodes/SymbolCandidates.h"
#include "virtual_reader/barcodes/SymbolDecoding_zxing.h"
#include "virtual_reader/pixels/Sampling.h"
#include "virtual_reader/records/ItemsOfKind.h"

namespace conduit {
namespace {

using ZXing::BarcodeFormat;

/// The formats that one call asks for on a page.
constexpr auto OnPage = DecoderFindsAll ? Matrix | Linear : Matrix;

/// ZXing-C++ 1.4 looks for these around the centre of an image only.
constexpr auto FoundInTheCentre = BarcodeFormat::Aztec | BarcodeFormat::DataMatrix;

/// The decoder takes up to four bytes for each pixel that it is given at once.
constexpr int MostPixelsAtOnce = 16'000'000;
/// Pixels that two bands of a page have in common: more than a symbol is high on a scan of 600
/// dpi.
constexpr int BandOverlap = 1000;
/// Pixels to rectify, in those of the page: bounds the time that a page full of patterns takes.
constexpr int RectifiedPages = 3;

/// The sides of the regions around a bull's eye that are tried, in modules: an Aztec Code is 15 to
/// 151 modules wide (ISO/IEC 24778).
constexpr int AztecSides[] = {32, 48, 80, 160};

// Pixels around bars, for modules of up to six pixels or more. A linear symbol has a quiet zone of
// ten modules at each end (ISO/IEC 15417, 16388 and 16390), PDF417 one of two modules on all sides
// (ISO/IEC 15438).
constexpr double QuietZoneAtEnds = 60;
constexpr double QuietZoneAlongBars = 20;

/// How far from a symbol that was read, in pixels, a symbol of the same data is a part of it.
constexpr int SameSymbolWithin = 32;
/// Linear symbols that are looked for on a band, one after the other.
constexpr int MostLinearSymbols = 64;

bool IsWhole(const PageFinding& one, const Rectangle& area) {
  return one.area.width == area.width && one.area.height == area.height;
}

bool HasSameData(const PageFinding& a, const PageFinding& b) {
  return a.type == b.type && b.IsRead() && a.data == b.data;
}

/// A part of a page from which symbols that were read are erased.
class Remainder {
 public:
  Remainder(const PageImage& image, const Rectangle& part) : page(image), area(part) {}

  void Erase(const Rectangle& symbol) {
    if (rest.luminance.empty()) {
      rest = {area.width, area.height, {}};
      for (int y = area.top; y < area.Bottom(); ++y) {
        const std::uint8_t* const row = page.Row(y) + area.left;
        rest.luminance.insert(rest.luminance.end(), row, row + area.width);
      }
    }
    const int left = std::max(0, symbol.left - area.left);
    const int right = std::min(area.width, symbol.Right() - area.left);
    const int bottom = std::min(area.height, symbol.Bottom() - area.top);
    for (int y = std::max(0, symbol.top - area.top); y < bottom && left < right; ++y) {
      const auto row = rest.luminance.begin() + static_cast<std::ptrdiff_t>(y) * area.width;
      std::fill(row + left, row + right, std::uint8_t{255});
    }
  }

  ZXing::ImageView View() const {
    return rest.luminance.empty()
               ? ViewOf(page).cropped(area.left, area.top, area.width, area.height)
               : ViewOf(rest);
  }

 private:
  const PageImage& page;
  Rectangle area;
  PageImage rest = {};  ///< empty: as on the page
};

/// Returns parts of an area, of which the decoder takes one after the other.
std::vector<Rectangle> BandsOf(const Rectangle& area) {
  const int height = std::max(2 * BandOverlap, MostPixelsAtOnce / area.width);
  std::vector<Rectangle> bands;
  for (int top = 0;; top += height - BandOverlap) {
    if (top + height >= area.height) {
      bands.push_back({area.left, area.top + top, area.width, area.height - top});
      return bands;
    }
    bands.push_back({area.left, area.top + top, area.width, height});
  }
}

/// The symbols of one page, found step by step.
class Search {
 public:
  Search(const PageImage& image, const std::function<void(const PageFinding&)>& tell)
      : page(image),
        tell(tell),
        pixelsLeft(std::int64_t{RectifiedPages} * image.width * image.height) {}

  void Run() {
    const SymbolCandidates candidates = FindSymbolCandidates(page, DecoderFindsAll);
    if (candidates.printed.width == 0) {
      return;
    }
    // Candidates of a single symbol come first. The decoder gives wrong places to what it
    // finds on a whole page that it rotates, so that a symbol is told by its bytes from one
    // that was found before.
    for (const SymbolCandidate& linear : candidates.linear) {
      DecodeLinear(linear);
    }
    for (const SymbolCandidate& bullsEye : candidates.bullsEyes) {
      DecodeAroundBullsEye(bullsEye);
    }
    for (const Rectangle& band : BandsOf(candidates.printed)) {
      DecodeBand(band);
      if constexpr (!DecoderFindsAll) {
        DecodeLinearOneByOne(band);
      }
    }
    for (const SymbolCandidate& linear : candidates.linear) {
      if (!DecoderFindsAll && !IsKnown(linear.region)) {
        AddDamagedLinear(linear);
      }
    }
    for (const SymbolCandidate& matrix : candidates.matrix) {
      DecodeMatrix(matrix);
    }
    for (PageFinding& failure : unplaced) {
      const bool isTold = std::any_of(found.begin(), found.end(), [&](const PageFinding& other) {
        return !other.IsRead() && other.type == failure.type;
      });
      if (!isTold) {
        Add(std::move(failure));
      }
    }
  }

 private:
  /// The decoder takes what is around a symbol for a part of it, and decodes one that is
  /// rotated by a few degrees no better than PDF417.
  void DecodeAroundBullsEye(SymbolCandidate bullsEye) {
    const double module = bullsEye.region.width / BullsEyeModules;
    for (const int modules : AztecSides) {
      if (IsKnown(bullsEye.region)) {
        return;
      }
      bullsEye.region.width = modules * module;
      bullsEye.region.height = modules * module;
      DecodeRectified(bullsEye, BarcodeFormat::Aztec);
    }
  }

  void DecodeLinear(SymbolCandidate linear) {
    if (IsKnown(linear.region)) {
      return;
    }
    const Rectangle where = linear.region.Bounds();
    linear.region.width += 2 * QuietZoneAtEnds;
    linear.region.height += 2 * QuietZoneAlongBars;
    DecodeRectified(linear, BarcodeFormat::PDF417 | Linear, where);
    if (!IsKnown(linear.region)) {
      linear.inverted = !linear.inverted;  // its quiet zone may be another thing
      DecodeRectified(linear, BarcodeFormat::PDF417 | Linear, where);
    }
  }

  void DecodeMatrix(const SymbolCandidate& matrix) {
    if (matrix.inverted) {
      DecodeRectified(matrix, Matrix);
    } else if (!IsKnown(matrix.region)) {
      for (PageFinding& one : DecodeIn(matrix.region.Bounds(), FoundInTheCentre | broken)) {
        Add(std::move(one));
      }
    }
  }

  void DecodeBand(const Rectangle& band) {
    const std::vector<PageFinding> before = found;
    for (PageFinding& one : DecodeIn(band, OnPage)) {
      if (!one.IsRead() && IsWhole(one, band)) {
        unplaced.push_back(std::move(one));
        continue;
      }
      // ZXing-C++ 1.4 gives wrong places on a page that it rotates.
      const bool known =
          std::any_of(before.begin(), before.end(), [&one](const PageFinding& other) {
            return one.IsRead() && HasSameData(one, other) &&
                   (!DecoderFindsAll || Overlap(Widened(one.area, SameSymbolWithin), other.area));
          });
      if (!known) {
        Add(std::move(one));
      }
    }
  }

  /// Erases each symbol, as the decoder returns one at a time.
  void DecodeLinearOneByOne(const Rectangle& band) {
    Remainder remainder(page, band);
    for (const PageFinding& one : found) {
      if (one.IsRead() && IsLinear(one.type)) {
        remainder.Erase(one.area);
      }
    }
    for (int count = 0; count < MostLinearSymbols; ++count) {
      const ZXing::Results results = DecodeLine(remainder.View(), true);
      if (results.empty()) {
        return;
      }
      PageFinding one = FindingOf(results.front(), BoundsIn(band, results.front()));
      const bool level = one.area.width >= one.area.height;
      one.area = WholeLinearSymbol(page, one.area);
      remainder.Erase(Widened(one.area, SameSymbolWithin / 2));
      const bool rest = std::any_of(found.begin(), found.end(), [&](const PageFinding& other) {
        return HasSameData(one, other) && Overlap(Widened(one.area, SameSymbolWithin), other.area);
      });
      if (!rest && IsConfirmed(one, level)) {
        Add(std::move(one));
      }
    }
  }

  /// Returns whether two lines say so: one may be chance, of text as well.
  bool IsConfirmed(const PageFinding& one, bool level) const {
    // The decoder's place is that of the bars alone.
    const int margin = 16 + std::max(one.area.width, one.area.height) / 4;
    const auto view = ViewOn(WithinPage(Widened(one.area, margin)));
    const ZXing::Results again = DecodeScatteredLines(level ? view : view.rotated(90));
    return !again.empty() && HasSameData(one, FindingOf(again.front(), {}));
  }

  /// Adds a failure where bars of which nothing was read are a linear symbol.
  void AddDamagedLinear(const SymbolCandidate& bars) {
    const Rectangle around = Widened(bars.region.Bounds(), static_cast<int>(QuietZoneAtEnds));
    for (PageFinding& one : DecodeIn(WithinPage(around), Linear)) {
      one.area = WholeLinearSymbol(page, one.area);
      Add(std::move(one));
    }
  }

  ZXing::ImageView ViewOn(const Rectangle& area) const {
    return ViewOf(page).cropped(area.left, area.top, area.width, area.height);
  }

  /// Returns the bounds on the page of a symbol that was decoded in a part of it.
  static Rectangle BoundsIn(const Rectangle& part, const ZXing::Result& result) {
    Rectangle bounds = BoundsOf(result.position());
    bounds.left += part.left;
    bounds.top += part.top;
    return bounds;
  }

  std::vector<PageFinding> DecodeIn(const Rectangle& area, ZXing::BarcodeFormats formats) {
    const auto view = ViewOn(area);
    DecodedSymbols decoded = DecodeSymbols(view, formats, true);
    std::vector<PageFinding> here = BrokenIn(area, decoded.broken);
    ZXing::BarcodeFormats failed;
    for (const ZXing::Result& result : decoded.results) {
      if (!result.isValid()) {
        failed |= result.format();
      }
    }
    // A failure at one size keeps the decoder from returning a symbol at the other.
    if (!failed.empty()) {
      ZXing::Results good = DecodeSymbols(view, failed, false).results;
      std::move(good.begin(), good.end(), std::back_inserter(decoded.results));
    }
    for (const ZXing::Result& result : decoded.results) {
      here.push_back(FindingOf(result, BoundsIn(area, result)));
    }
    return here;
  }

  /// Returns failures of formats that cannot be decoded in an area. Smaller ones are searched for
  /// them later.
  std::vector<PageFinding> BrokenIn(Rectangle area, ZXing::BarcodeFormats formats) {
    broken |= formats;
    area.left = std::max(0, area.left);
    area.top = std::max(0, area.top);
    std::vector<PageFinding> failures;
    for (const ReaderDataType type : TypesOf(formats)) {
      failures.push_back({type, {}, area, BrokenRules});
    }
    return failures;
  }

  /// Decodes a region by itself, rotated level.
  /// @param where  the place of a linear symbol that is found: only lines of it are known
  void DecodeRectified(const SymbolCandidate& symbol, ZXing::BarcodeFormats formats,
                       const Rectangle& where = {}) {
    const double pixels = symbol.region.Area();
    if (pixels > double{MostPixelsAtOnce} || pixels > static_cast<double>(pixelsLeft)) {
      return;
    }
    pixelsLeft -= static_cast<std::int64_t>(pixels);
    const RectifiedRegion rectified(page, symbol.region, symbol.inverted);
    const auto view = ViewOf(rectified.Image());
    for (const ZXing::BarcodeFormats part : {formats & Matrix, formats & Linear}) {
      if (part.empty()) {
        continue;
      }
      DecodedSymbols decoded = DecodeSymbols(view, part, false);
      for (PageFinding& failure : BrokenIn(symbol.region.Bounds(), decoded.broken)) {
        Add(std::move(failure));
      }
      ZXing::Results results = std::move(decoded.results);
      if (results.empty() && part.testFlags(Linear)) {
        results = DecodeScatteredLines(view);
      }
      for (const ZXing::Result& result : results) {
        PageFinding one = FindingOf(result, where);
        if (!IsLinear(one.type)) {
          one.area = rectified.OnPage(BoundsOf(result.position()));
        }
        Add(std::move(one));
      }
      if (!results.empty()) {
        return;
      }
    }
  }

  /// Adds what was not found before.
  void Add(PageFinding one) {
    const bool known = std::any_of(found.begin(), found.end(), [&](const PageFinding& other) {
      return IsSameSymbol(one, other) && (other.IsRead() || !one.IsRead());
    });
    if (!known) {
      found.push_back(std::move(one));
      tell(found.back());
    }
  }

  /// Returns whether the symbol in the centre of a region was read.
  bool IsKnown(const RotatedRectangle& region) const {
    const Rectangle around = region.Bounds();
    const Rectangle centre = {static_cast<int>(region.centre.x), static_cast<int>(region.centre.y),
                              1, 1};
    return std::any_of(found.begin(), found.end(), [&](const PageFinding& one) {
      const Rectangle foundCentre = {one.area.left + one.area.width / 2,
                                     one.area.top + one.area.height / 2, 1, 1};
      return one.IsRead() && (Overlap(one.area, centre) || Overlap(foundCentre, around));
    });
  }

  const PageImage& page;
  const std::function<void(const PageFinding&)>& tell;
  std::int64_t pixelsLeft;            ///< to rectify
  ZXing::BarcodeFormats broken;       ///< see DecodedSymbols
  std::vector<PageFinding> unplaced;  ///< failures somewhere in a large area
  std::vector<PageFinding> found;
};

}  // namespace

bool CanSearchPages() { return true; }

std::vector<ReaderDataType> BarcodesNotLookedFor() {
  const std::vector<ReaderDataType> decoded = TypesOf(Matrix | Linear);
  std::vector<ReaderDataType> missing;
  for (const ReaderItem& row : ItemsOfKind(ReaderItemKind::Barcode)) {
    if (std::find(decoded.begin(), decoded.end(), row.type) == decoded.end()) {
      missing.push_back(row.type);
    }
  }
  return missing;
}

void SearchPage(const PageImage& image, const std::function<void(const PageFinding&)>& tell) {
  Search(image, tell).Run();
}

PageFindings SearchPage(const PageImage& image) {
  std::vector<PageFinding> found;
  SearchPage(image, [&found](const PageFinding& one) { found.push_back(one); });
  return ArrangeFindings(std::move(found));
}

}  // namespace conduit
