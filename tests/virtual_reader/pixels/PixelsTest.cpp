#include <gmock/gmock.h>

#include <numbers>
#include <string>

#include "tests/virtual_reader/DrawnPage.h"
#include "virtual_reader/pixels/Components.h"
#include "virtual_reader/pixels/Contrast.h"
#include "virtual_reader/pixels/Grid.h"
#include "virtual_reader/pixels/Sampling.h"

namespace conduit {
namespace {

using testing::ElementsAre;

std::string Text(const Rectangle& area) {
  return std::to_string(area.left) + ' ' + std::to_string(area.top) + ' ' +
         std::to_string(area.width) + " x " + std::to_string(area.height);
}

TEST(Geometry, PutsARotatedRectangleOnThePage) {
  const RotatedRectangle area = {{50, 40}, 20, 10, std::numbers::pi / 2};
  EXPECT_EQ(Text(area.Bounds()), "45 30 10 x 20");
  EXPECT_EQ(Text(RotatedRectangle{{50, 40}, 20, 0, std::numbers::pi / 4}.Bounds()),
            "43 33 14 x 14");
  // A quarter turn clockwise: along the rectangle is down the page.
  const Point corner = area.Axes().ToPage(10, 5);
  EXPECT_NEAR(corner.x, 45, 1e-9);
  EXPECT_NEAR(corner.y, 50, 1e-9);
  const Point back = area.Axes().FromPage(corner);
  EXPECT_NEAR(back.x, 10, 1e-9);
  EXPECT_NEAR(back.y, 5, 1e-9);
  EXPECT_EQ(Text(WithinPage(Widened({3, 40, 10, 10}, 5))), "0 35 18 x 20");
  EXPECT_TRUE(Overlap({0, 0, 10, 10}, {9, 9, 5, 5}));
  EXPECT_FALSE(Overlap({0, 0, 10, 10}, {10, 0, 5, 5}));
}

TEST(Grid, CoversAPageWhoseSidesAreNoMultiples) {
  const PageImage page = Drawn(10, 5, [](int, int) { return 0; });
  const Grid<int> grid(page, 4);
  EXPECT_THAT((std::array{grid.columns, grid.rows}), ElementsAre(3, 2));
  EXPECT_EQ(Text(grid.Pixels({2, 1, 1, 1}, page, 0)), "8 4 2 x 1");
  EXPECT_EQ(Text(grid.Pixels({1, 1, 1, 1}, page, 1)), "0 0 10 x 5");
}

TEST(Sampling, InterpolatesBetweenCentresOfPixels) {
  const PageImage page = Drawn(3, 2, [](int x, int y) { return 40 * x + 100 * y; });
  EXPECT_EQ(LuminanceAt(page, 0.25F, 0), 10);
  EXPECT_EQ(LuminanceAt(page, 1.5F, 0.5F), 110);
  EXPECT_EQ(LuminanceAt(page, -5, 0), 0) << "beyond the image the rim goes on";
  EXPECT_EQ(PixelAt(page, {2.9, 1.9}), 180);
  EXPECT_EQ(PixelAt(page, {3.0, 1.0}), std::nullopt);
  EXPECT_EQ(PixelAt(page, {-0.1, 1.0}), std::nullopt);
  EXPECT_THAT(Reduced(page, 2).luminance, ElementsAre(70));
}

TEST(Sampling, RectifiesARotatedRegion) {
  // A column that is dark becomes the middle row of the region on its side.
  const PageImage page = Drawn(40, 40, [](int x, int) { return x == 20 ? 0 : 200; });
  for (const bool inverted : {false, true}) {
    const RectifiedRegion region(page, {{20.5, 20}, 11, 3, std::numbers::pi / 2}, inverted);
    const PageImage& image = region.Image();
    ASSERT_THAT((std::array{image.width, image.height}), ElementsAre(11, 3));
    EXPECT_EQ(image.Row(0)[5], inverted ? 55 : 200);
    EXPECT_EQ(image.Row(1)[5], inverted ? 255 : 0);
    EXPECT_EQ(Text(region.OnPage({0, 1, 11, 1})), "20 15 1 x 11");
  }
  const RectifiedRegion beyond(page, {{0, 20}, 10, 3, 0}, false);
  EXPECT_EQ(beyond.Image().Row(1)[0], 255) << "no page is as white paper";
}

TEST(Components, TouchAtCornersAndKeepTheirOrder) {
  const std::vector<std::string> rows = {"#...#..", ".#..#.#", "....##.", "#......", "..#####"};
  ComponentLabelling labelling;
  for (const std::string& row : rows) {
    std::vector<std::uint8_t> set;
    for (const char character : row) {
      set.push_back(character == '#' ? 1 : 0);
    }
    labelling.AddRow(set.data(), static_cast<int>(set.size()));
  }
  std::vector<std::string> components;
  for (const Component& one : labelling.Take()) {
    components.push_back(Text(one.bounds) + ": " + std::to_string(one.pixels));
  }
  EXPECT_THAT(components,
              ElementsAre("0 0 2 x 2: 2", "4 0 3 x 3: 5", "0 3 1 x 1: 1", "2 4 5 x 1: 5"));
}

TEST(Contrast, LeavesOutAFewPixels) {
  const PageImage page = Drawn(200, 200, [](int x, int y) {
    return x == 0 && y < 8 ? (y < 4 ? 0 : 255) : 50 + 100 * (x / 100);
  });
  const Contrast contrast = ContrastOf(page);
  EXPECT_THAT((std::array{contrast.darkest, contrast.lightest, contrast.Threshold()}),
              ElementsAre(50, 150, 100));
}

TEST(EdgeCounter, DoesNotCountNoiseAroundTheThreshold) {
  const Contrast contrast = {0, 200};
  const int lines[3][6] = {{200, 95, 105, 95, 105, 200},  // noise within the band
                           {200, 0, 200, 0, 200, 0},
                           {200, 0, 0, 0, 105, 200}};
  const auto eachPixel = [&](auto&& visit) {
    for (int i = 0; i < 6; ++i) {
      for (int line = 0; line < 3; ++line) {
        visit(line, lines[line][i]);
      }
    }
  };
  EXPECT_EQ(MedianEdgeCount<3>(contrast, eachPixel), 2) << "of 0, 5 and 2";
  EXPECT_EQ(MedianEdgeCount<1>(contrast,
                               [&](auto&& visit) {
                                 for (const int luminance : lines[0]) {
                                   visit(0, luminance);
                                 }
                               }),
            0);
}

}  // namespace
}  // namespace conduit
