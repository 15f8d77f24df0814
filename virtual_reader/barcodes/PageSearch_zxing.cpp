#define ZX_USE_UTF8 1
#include <ZXing/ReadBarcode.h>
#if __has_include(<ZXing/Version.h>)
#include <ZXing/Version.h>
#else
#include <ZXing/ZXVersion.h>
#endif

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <functional>
#include <iterator>
#include <new>
#include <utility>

#include "virtual_reader/ItemsOfKind.h"
#include "virtual_reader/barcodes/AztecBits.h"
#include "virtual_reader/barcodes/PageAreas.h"
#include "virtual_reader/barcodes/PageCut.h"
#include "virtual_reader/barcodes/PageSearch.h"

namespace conduit {
namespace {

using ZXing::BarcodeFormat;

/// ZXing-C++ 2 finds several symbols of every kind in one call, Aztec Codes anywhere and
/// light symbols on dark. Of the finders here the one for bars alone still pays then: of 89
/// symbols on drawn ID-1 pages the decoder reads 57 alone and 86 with it, and the others add
/// none. What 1.4 is guarded against is not compiled in.
constexpr bool DecoderFindsAll = ZXING_VERSION_MAJOR >= 2;

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

constexpr auto Linear = BarcodeFormat::Code39 | BarcodeFormat::Code128 | BarcodeFormat::ITF;
constexpr auto Matrix = BarcodeFormat::PDF417 | BarcodeFormat::Aztec | BarcodeFormat::QRCode |
                        BarcodeFormat::DataMatrix;

/// What is asked for in one call for a page.
constexpr auto OnPage = DecoderFindsAll ? Matrix | Linear : Matrix;

/// ZXing-C++ 1.4 looks for these around the middle of an image only.
constexpr auto FoundInTheMiddle = BarcodeFormat::Aztec | BarcodeFormat::DataMatrix;

constexpr const char* BrokenRules = "it breaks the rules of its symbology";

ReaderDataType TypeOf(const ZXing::Result& result) {
  return std::find_if(std::begin(Symbologies), std::end(Symbologies),
                      [&](const auto& row) { return row.format == result.format(); })
      ->type;
}

bool IsLinear(ReaderDataType type) {
  return std::any_of(std::begin(Symbologies), std::end(Symbologies), [&](const auto& row) {
    return row.type == type && ZXing::BarcodeFormats(Linear).testFlag(row.format);
  });
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

/// Without what was read of it: that does not belong into a log.
PageFinding FindingOf(const ZXing::Result& result, const PageArea& area) {
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

PageArea AreaOf(const ZXing::Position& corners) {
  const auto [minX, maxX] = std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
  const auto [minY, maxY] = std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
  return {minX, minY, maxX - minX + 1, maxY - minY + 1};
}

ZXing::ImageView ViewOf(const PageImage& image) {
  return {image.light.data(), image.width, image.height, ZXing::ImageFormat::Lum};
}

/// @param failures  also gives what is there and cannot be decoded
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

struct Decoded {
  ZXing::Results results;
  ZXing::BarcodeFormats broken;  ///< those of which a symbol makes the decoder throw
};

/// The same, of each format that can be decoded: for a symbol that breaks the rules of its
/// data, ZXing-C++ 1.4 throws, and whatever else it has found is lost.
Decoded DecodeEach(const ZXing::ImageView& view, ZXing::BarcodeFormats formats, bool failures) {
  if constexpr (DecoderFindsAll) {
    return {Decode(view, formats, failures), {}};
  }
  try {
    return {Decode(view, formats, failures), {}};
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    if (formats.count() == 1) {
      return {{}, formats};
    }
  }
  Decoded all;
  for (const ZXing::BarcodeFormat format : formats) {
    Decoded one = DecodeEach(view, format, failures);
    std::move(one.results.begin(), one.results.end(), std::back_inserter(all.results));
    all.broken |= one.broken;
  }
  return all;
}

/// What a single line tells of a linear symbol, which may be chance.
ZXing::Results DecodeLine(const ZXing::ImageView& view, bool rotate) {
  return ZXing::ReadBarcodes(view, DecoderOptions()
                                       .setFormats(Linear)
                                       .setTryRotate(rotate)
                                       .setTryDownscale(false)
                                       .setMaxNumberOfSymbols(1)
                                       .setMinLineCount(1));
}

/// A linear symbol whose bars stand upright and of which two lines at any distance say
/// the same. Asked for a single result, the decoder itself awaits them beside each
/// other, which blur and noise may not grant.
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

bool IsWhole(const PageFinding& one, const PageArea& area) {
  return one.area.width == area.width && one.area.height == area.height;
}

bool HasSameData(const PageFinding& a, const PageFinding& b) {
  return a.type == b.type && b.IsRead() && a.data == b.data;
}

PageArea Widened(const PageArea& area, int margin) {
  return {area.left - margin, area.top - margin, area.width + 2 * margin, area.height + 2 * margin};
}

/// The bars that a line across them goes through, as far as each row of pixels is like
/// the one before it.
PageArea WholeSymbol(const PageImage& page, const PageArea& line) {
  const bool level = line.width >= line.height;
  const int start = std::max(1, level ? line.left : line.top);
  const int end = level ? std::min(page.width, line.left + line.width)
                        : std::min(page.height, line.top + line.height);
  const auto light = [&](int along, int across) {
    const std::ptrdiff_t at = level ? std::ptrdiff_t{across} * page.width + along
                                    : std::ptrdiff_t{along} * page.width + across;
    return int{page.light[static_cast<std::size_t>(at)]};
  };
  const int last = (level ? page.height : page.width) - 1;
  int low = std::clamp(level ? line.top : line.left, 0, last);
  int high = std::clamp(level ? line.top + line.height - 1 : line.left + line.width - 1, low, last);
  int darkest = 255;
  int lightest = 0;
  for (int along = start; along < end; ++along) {
    darkest = std::min(darkest, light(along, low));
    lightest = std::max(lightest, light(along, low));
  }
  const auto alike = [&](int across, int next) {
    // Bars that do not stand upright are a pixel further on in the next row.
    for (const int shift : {0, -1, 1}) {
      int difference = 0;
      for (int along = start; along + 1 < end; ++along) {
        difference += std::abs(light(along, across) - light(along + shift, next));
      }
      if (difference * 5 < (end - start) * (lightest - darkest)) {
        return true;
      }
    }
    return false;
  };
  while (low > 0 && alike(low, low - 1)) {
    --low;
  }
  while (high < last && alike(high, high + 1)) {
    ++high;
  }
  const int thickness = high - low + 1;
  return level ? PageArea{line.left, low, line.width, thickness}
               : PageArea{low, line.top, thickness, line.height};
}

/// A part of a page on which what was read is made to vanish.
class Remainder {
 public:
  Remainder(const PageImage& image, const PageArea& part) : page(image), area(part) {}

  void Cover(const PageArea& gone) {
    if (light.empty()) {
      for (int y = 0; y < area.height; ++y) {
        const auto row = page.light.begin() + At(page.width, area.left, area.top + y);
        light.insert(light.end(), row, row + area.width);
      }
    }
    const int left = std::max(0, gone.left - area.left);
    const int right = std::min(area.width, gone.left + gone.width - area.left);
    const int bottom = std::min(area.height, gone.top + gone.height - area.top);
    for (int y = std::max(0, gone.top - area.top); y < bottom && left < right; ++y) {
      std::fill_n(light.begin() + At(area.width, left, y), right - left, std::uint8_t{255});
    }
  }

  ZXing::ImageView View() const {
    return light.empty()
               ? ViewOf(page).cropped(area.left, area.top, area.width, area.height)
               : ZXing::ImageView(light.data(), area.width, area.height, ZXing::ImageFormat::Lum);
  }

 private:
  static std::ptrdiff_t At(int width, int x, int y) {
    return static_cast<std::ptrdiff_t>(y) * width + x;
  }

  const PageImage& page;
  PageArea area;
  std::vector<std::uint8_t> light;  ///< empty: as on the page
};

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

/// How far from a symbol that was read, in pixels, what says the same is a part of it.
constexpr int Near = 32;

/// What one page shows, found step by step.
class Search {
 public:
  Search(const PageImage& image, const std::function<void(const PageFinding&)>& tell)
      : page(image), tell(tell), pixelsLeft(std::int64_t{3} * image.width * image.height) {}

  void Run() {
    const PageAreas areas = FindAreas(page, DecoderFindsAll);
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
      LookOnPage(band);
      if constexpr (!DecoderFindsAll) {
        LookForLinear(band);
      }
    }
    for (const SymbolArea& bars : areas.bars) {
      if (!DecoderFindsAll && !IsKnown(bars.area)) {
        LookForFailure(bars);
      }
    }
    for (const SymbolArea& isolated : areas.isolated) {
      if (isolated.inverted) {
        LookInCut(isolated, Matrix);
      } else if (!IsKnown(isolated.area)) {
        for (PageFinding& one : LookIn(isolated.area.Around(), FoundInTheMiddle | broken)) {
          Add(std::move(one));
        }
      }
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
    constexpr double margin = 20;      // the light that a symbol needs around itself
    constexpr double besideBars = 60;  // a linear one ten modules of it at its ends
    if (IsKnown(bars.area)) {
      return;
    }
    const PageArea where = bars.area.Around();
    bars.area.width += 2 * besideBars;
    bars.area.height += 2 * margin;
    LookInCut(bars, BarcodeFormat::PDF417 | Linear, where);
    if (!IsKnown(bars.area)) {
      bars.inverted = !bars.inverted;  // what was taken for its margin may be another thing
      LookInCut(bars, BarcodeFormat::PDF417 | Linear, where);
    }
  }

  void LookOnPage(const PageArea& area) {
    const std::vector<PageFinding> before = found;
    for (PageFinding& one : LookIn(area, OnPage)) {
      if (!one.IsRead() && IsWhole(one, area)) {
        unplaced.push_back(std::move(one));
        continue;
      }
      // ZXing-C++ 1.4 gives wrong places on a page that it turns.
      const bool known =
          std::any_of(before.begin(), before.end(), [&one](const PageFinding& other) {
            return one.IsRead() && HasSameData(one, other) &&
                   (!DecoderFindsAll || Overlap(Widened(one.area, Near), other.area));
          });
      if (!known) {
        Add(std::move(one));
      }
    }
  }

  /// One after the other, each out of the way of the next.
  void LookForLinear(const PageArea& area) {
    constexpr int most = 64;
    Remainder remainder(page, area);
    for (const PageFinding& one : found) {
      if (one.IsRead() && IsLinear(one.type)) {
        remainder.Cover(one.area);
      }
    }
    for (int count = 0; count < most; ++count) {
      const ZXing::Results results = DecodeLine(remainder.View(), true);
      if (results.empty()) {
        return;
      }
      PageFinding one = FindingOf(results.front(), AreaOf(results.front().position()));
      one.area.left += area.left;
      one.area.top += area.top;
      const bool level = one.area.width >= one.area.height;
      one.area = WholeSymbol(page, one.area);
      remainder.Cover(Widened(one.area, Near / 2));
      const bool rest = std::any_of(found.begin(), found.end(), [&](const PageFinding& other) {
        return HasSameData(one, other) && Overlap(Widened(one.area, Near), other.area);
      });
      if (!rest && IsConfirmed(one, level)) {
        Add(std::move(one));
      }
    }
  }

  /// Whether two lines say so: one may be chance, of text as well.
  bool IsConfirmed(const PageFinding& one, bool level) const {
    const int margin = 16 + std::max(one.area.width, one.area.height) / 4;
    const PageArea whole = Widened(one.area, margin);
    const int left = std::max(0, whole.left);
    const int top = std::max(0, whole.top);
    const auto view = ViewOf(page).cropped(left, top, whole.left + whole.width - left,
                                           whole.top + whole.height - top);
    const ZXing::Results again = DecodeScatteredLines(level ? view : view.rotated(90));
    return !again.empty() && HasSameData(one, FindingOf(again.front(), {}));
  }

  /// Whether bars that nothing was read of are a linear symbol that is damaged.
  void LookForFailure(const SymbolArea& bars) {
    constexpr int margin = 60;
    const PageArea around = Widened(bars.area.Around(), margin);
    const int left = std::max(0, around.left);
    const int top = std::max(0, around.top);
    for (PageFinding& one :
         LookIn({left, top, around.left + around.width - left, around.top + around.height - top},
                Linear)) {
      one.area = WholeSymbol(page, one.area);
      Add(std::move(one));
    }
  }

  std::vector<PageFinding> LookIn(const PageArea& area, ZXing::BarcodeFormats formats) {
    const auto view = ViewOf(page).cropped(area.left, area.top, area.width, area.height);
    Decoded decoded = DecodeEach(view, formats, true);
    std::vector<PageFinding> here = BrokenIn(area, decoded.broken);
    ZXing::BarcodeFormats failed;
    for (const ZXing::Result& result : decoded.results) {
      if (!result.isValid()) {
        failed |= result.format();
      }
    }
    // What fails at one size keeps the decoder from telling what is good at the other.
    if (!failed.empty()) {
      ZXing::Results good = DecodeEach(view, failed, false).results;
      std::move(good.begin(), good.end(), std::back_inserter(decoded.results));
    }
    for (const ZXing::Result& result : decoded.results) {
      PageArea at = AreaOf(result.position());
      at.left += area.left;
      at.top += area.top;
      here.push_back(FindingOf(result, at));
    }
    return here;
  }

  /// Failures of formats that cannot be decoded in an area. Smaller ones are looked at for
  /// them later.
  std::vector<PageFinding> BrokenIn(PageArea area, ZXing::BarcodeFormats formats) {
    broken |= formats;
    area.left = std::max(0, area.left);
    area.top = std::max(0, area.top);
    std::vector<PageFinding> failures;
    for (const auto& row : Symbologies) {
      if (formats.testFlag(row.format)) {
        failures.push_back({row.type, {}, area, BrokenRules});
      }
    }
    return failures;
  }

  /// @param where  a linear symbol is that is found: only lines of it are known
  void LookInCut(const SymbolArea& symbol, ZXing::BarcodeFormats formats,
                 const PageArea& where = {}) {
    constexpr double mostPixels = 16e6;
    const double pixels = symbol.area.width * symbol.area.height;
    if (pixels > mostPixels || pixels > static_cast<double>(pixelsLeft)) {
      return;
    }
    pixelsLeft -= static_cast<std::int64_t>(pixels);
    const PageCut cut(page, symbol.area, symbol.inverted);
    for (const ZXing::BarcodeFormats part : {formats & Matrix, formats & Linear}) {
      if (part.empty()) {
        continue;
      }
      Decoded decoded = DecodeEach(ViewOf(cut.Image()), part, false);
      for (PageFinding& failure : BrokenIn(symbol.area.Around(), decoded.broken)) {
        Add(std::move(failure));
      }
      ZXing::Results results = std::move(decoded.results);
      if (results.empty() && part.testFlags(Linear)) {
        results = DecodeScatteredLines(ViewOf(cut.Image()));
      }
      for (const ZXing::Result& result : results) {
        const PageArea at =
            IsLinear(TypeOf(result)) ? where : cut.OnPage(AreaOf(result.position()));
        Add(FindingOf(result, at));
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

  /// Whether what stands in the middle of an area was read.
  bool IsKnown(const TurnedArea& area) const {
    const PageArea around = area.Around();
    const PageArea middle = {static_cast<int>(area.middleX), static_cast<int>(area.middleY), 1, 1};
    return std::any_of(found.begin(), found.end(), [&](const PageFinding& one) {
      const PageArea foundMiddle = {one.area.left + one.area.width / 2,
                                    one.area.top + one.area.height / 2, 1, 1};
      return one.IsRead() && (Overlap(one.area, middle) || Overlap(foundMiddle, around));
    });
  }

  const PageImage& page;
  const std::function<void(const PageFinding&)>& tell;
  std::int64_t pixelsLeft;       ///< to cut out: bounds the time that a page full of patterns takes
  ZXing::BarcodeFormats broken;  ///< see DecodeEach
  std::vector<PageFinding> unplaced;  ///< failures somewhere in a large area
  std::vector<PageFinding> found;
};

}  // namespace

bool CanSearchPages() { return true; }

std::vector<ReaderDataType> BarcodesNotLookedFor() {
  std::vector<ReaderDataType> missing;
  for (const ReaderItem& row : ItemsOfKind(ReaderItemKind::Barcode)) {
    if (std::none_of(std::begin(Symbologies), std::end(Symbologies),
                     [&row](const auto& symbology) { return symbology.type == row.type; })) {
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
