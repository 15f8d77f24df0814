#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "tests/virtual_reader/DrawnPage.h"
#include "virtual_reader/barcodes/BullsEyeFinder.h"
#include "virtual_reader/barcodes/LinearFinder.h"
#include "virtual_reader/barcodes/MatrixFinder.h"

namespace conduit {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr int Width = 480;
constexpr int Height = 320;
constexpr double Degree = std::numbers::pi / 180;

/// A page with a symbol around its centre, rotated.
/// @param isDark  of a place in the symbol, in pixels from its centre along and across the angle
PageImage PageWith(double angle, bool inverted, auto&& isDark) {
  const RotatedAxes axes({Width / 2.0, Height / 2.0}, angle);
  return Drawn(Width, Height, [&](int x, int y) {
    // The mean of three by three places, as a scanner has it.
    int dark = 0;
    for (int i = 0; i < 9; ++i) {
      const Point place = axes.FromPage({x + (i % 3 + 0.5) / 3, y + (i / 3 + 0.5) / 3});
      dark += isDark(place.x, place.y) ? 1 : 0;
    }
    return inverted ? 40 + 20 * dark : 220 - 20 * dark;
  });
}

std::vector<SymbolCandidate> FindLinear(const PageImage& page) {
  const Contrast contrast = ContrastOf(page);
  return FindLinearSymbols(page, FindEdges(page, contrast), contrast);
}

std::vector<SymbolCandidate> FindMatrix(const PageImage& page) {
  return FindMatrixSymbols(page, FindEdges(page, ContrastOf(page)));
}

/// Bars of three and six pixels, in turn, 200 by 80 pixels.
bool IsBar(double x, double y) {
  return std::abs(x) < 100 && std::abs(y) < 40 && std::fmod(x + 100, 9) < 3;
}
/// Modules of four pixels, 20 by 20, dark where they are in no Latin square.
bool IsModule(double x, double y) {
  const int column = static_cast<int>(std::floor(x / 4));
  const int row = static_cast<int>(std::floor(y / 4));
  return std::abs(x) < 40 && std::abs(y) < 40 && (column * column + 3 * row) % 5 < 2;
}
bool IsRing(double x, double y) {
  const double out = std::max(std::abs(x), std::abs(y));
  return out < 27 && static_cast<int>((out + 3) / 6) % 2 == 0;
}
bool IsText(double x, double y) {
  return std::abs(x) < 100 && std::abs(y) < 8 && std::fmod(x + 100, 16) < 4;
}

TEST(EdgeGrid, LeavesNoiseOutAndRoomAroundPrint) {
  const PageImage page = Drawn(400, 300, [](int x, int y) {
    const bool isPrint = x >= 200 && x < 220 && y >= 160 && y < 170;
    return isPrint ? 0 : 200 + (x + y) % 2 * 40;
  });
  const EdgeGrid edges = FindEdges(page, {0, 240});
  EXPECT_EQ(edges.At(10, 10), 0) << "grain of single pixels";
  EXPECT_EQ(edges.At(49, 41), 1);
  const Rectangle printed = PrintedBounds(edges, page);
  EXPECT_LE(printed.left, 200 - 60) << "ten modules of six pixels";
  EXPECT_GE(printed.Right(), 220 + 60);
  EXPECT_GT(printed.left, 0);
  EXPECT_EQ(PrintedBounds(EdgeGrid(page, 4), page).width, 0);
}

TEST(LinearFinder, FindsBarsAtAnyAngleOnLightOrDark) {
  for (const double degrees : {0.0, 12.0, 45.0, 90.0, 137.0}) {
    for (const bool inverted : {false, true}) {
      const auto found = FindLinear(PageWith(degrees * Degree, inverted, IsBar));
      ASSERT_THAT(found, SizeIs(1)) << degrees;
      const RotatedRectangle& region = found[0].region;
      EXPECT_NEAR(region.centre.x, Width / 2.0, 8) << degrees;
      EXPECT_NEAR(region.centre.y, Height / 2.0, 8) << degrees;
      EXPECT_NEAR(std::remainder(region.angle - degrees * Degree, std::numbers::pi), 0, Degree)
          << degrees;
      EXPECT_NEAR(region.width, 230, 30) << degrees << ": with cells around";
      EXPECT_EQ(found[0].inverted, inverted) << degrees;
    }
  }
}

TEST(LinearFinder, LeavesOutWhatIsNoSymbol) {
  EXPECT_THAT(FindLinear(PageWith(0, false, IsText)), IsEmpty()) << "too few edges";
  EXPECT_THAT(FindLinear(PageWith(0, false, IsModule)), IsEmpty()) << "edges both ways";
}

TEST(LinearFinder, JoinsTheTwoSidesOfAGap) {
  const auto found = FindLinear(
      PageWith(0, false, [](double x, double y) { return std::abs(x) > 28 && IsBar(x, y); }));
  EXPECT_THAT(found, SizeIs(1));
}

TEST(LinearFinder, ExtendsALineToTheWholeSymbol) {
  const auto isUpper = [](double x, double y) { return IsBar(x, y) && y < 20; };
  const Rectangle upright = WholeLinearSymbol(PageWith(0, false, isUpper), {140, 150, 200, 1});
  EXPECT_NEAR(upright.top, 120, 1);
  EXPECT_NEAR(upright.Bottom(), 180, 1);
  EXPECT_EQ(upright.width, 200);
  const Rectangle level =
      WholeLinearSymbol(PageWith(90 * Degree, false, isUpper), {240, 60, 1, 200});
  EXPECT_NEAR(level.left, 220, 1);
  EXPECT_NEAR(level.Right(), 280, 1);
}

TEST(MatrixFinder, FindsDenseSquaresOnly) {
  for (const bool inverted : {false, true}) {
    const auto found = FindMatrix(PageWith(0, inverted, IsModule));
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_NEAR(found[0].region.centre.x, Width / 2.0, 4);
    EXPECT_NEAR(found[0].region.width, 80, 20);
    EXPECT_EQ(found[0].inverted, inverted);
  }
  EXPECT_THAT(FindMatrix(PageWith(0, false, IsText)), IsEmpty());
  EXPECT_THAT(
      FindMatrix(PageWith(
          0, false, [](double x, double y) { return std::max(std::abs(x), std::abs(y)) < 30; })),
      IsEmpty())
      << "a block has two edges";
}

TEST(BullsEyeFinder, FindsConcentricSquaresAtAnyAngle) {
  for (const double degrees : {0.0, 10.0, -20.0, 30.0}) {
    for (const bool inverted : {false, true}) {
      const PageImage page = PageWith(degrees * Degree, inverted, IsRing);
      const auto found = FindBullsEyes(page, {0, 0, Width, Height}, ContrastOf(page));
      ASSERT_THAT(found, SizeIs(1)) << degrees;
      EXPECT_NEAR(found[0].region.centre.x, Width / 2.0, 2) << degrees;
      EXPECT_NEAR(found[0].region.centre.y, Height / 2.0, 2) << degrees;
      EXPECT_NEAR(found[0].region.angle, degrees * Degree, 2 * Degree) << degrees;
      EXPECT_EQ(found[0].inverted, inverted) << degrees;
    }
  }
  for (const PageImage& page : {PageWith(0, false, IsBar), PageWith(0, false, IsModule)}) {
    EXPECT_THAT(FindBullsEyes(page, {0, 0, Width, Height}, ContrastOf(page)), IsEmpty());
  }
}

TEST(SymbolCandidates, AreNoneOnPaperWithoutPrint) {
  const auto paper = Drawn(Width, Height, [](int x, int y) { return 230 + (7 * x + 3 * y) % 10; });
  EXPECT_EQ(FindSymbolCandidates(paper, false).printed.width, 0);
  const PageImage page = PageWith(0, false, IsRing);
  EXPECT_THAT(FindSymbolCandidates(page, false).bullsEyes, SizeIs(1));
  EXPECT_THAT(FindSymbolCandidates(page, true).bullsEyes, IsEmpty());
}

}  // namespace
}  // namespace conduit
