#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "tests/virtual_reader/DrawnPage.h"
#include "virtual_reader/InputFile.h"
#include "virtual_reader/images/ImageDecoding.h"
#include "virtual_reader/mrz/LineStrip.h"
#include "virtual_reader/mrz/MrzText.h"

namespace conduit {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

/// Glyphs of one line, at a pitch of 20 pixels.
/// @param down  how far the line is bent at a column, in pixels
std::vector<GlyphCandidate> GlyphsOf(int columns, double top, auto&& down) {
  std::vector<GlyphCandidate> glyphs;
  glyphs.reserve(static_cast<std::size_t>(columns));
  for (int column = 0; column < columns; ++column) {
    glyphs.push_back({100 + 20.0 * column, top + down(column), 12, 20});
  }
  return glyphs;
}

double Level(int /*column*/) { return 0; }

/// Blocks in place of characters, in lines that are `distance` pixels apart.
PageImage PageOfBlocks(int columns, int lines, int distance) {
  return Drawn(1000, 400, [=](int x, int y) {
    const int column = (x - 60) / 20;
    const int line = (y - 100) / distance;
    const bool isLine = y >= 100 && line < lines && (y - 100) % distance < 20;
    return isLine && x >= 60 && column < columns && (x - 60) % 20 < 12 ? 30 : 220;
  });
}

TEST(GlyphCandidates, AreDarkComponentsOfACharactersSizeOnUnevenPaper) {
  const PageImage page = Drawn(400, 120, [](int x, int y) {
    const bool isGlyph = y >= 40 && y < 60 && x >= 100 && x % 40 < 12;
    const bool isSpeck = x >= 20 && x < 23 && y >= 20 && y < 23;
    const bool isRule = y >= 100 && y < 104;
    const int paper = 100 + x / 3;
    return isGlyph || isSpeck || isRule ? paper - 60 : paper;
  });
  const std::vector<GlyphCandidate> glyphs = FindGlyphCandidates(page);
  ASSERT_THAT(glyphs, SizeIs(7));
  EXPECT_EQ(glyphs[0].x, 126);
  EXPECT_EQ(glyphs[0].y, 50);
  EXPECT_EQ(glyphs[0].width, 12);
  EXPECT_EQ(glyphs[0].height, 20);
}

TEST(LineCurve, FollowsPointsByTheirWeight) {
  std::vector<CurvePoint> points;
  points.reserve(11);
  for (int column = 0; column < 10; ++column) {
    points.push_back({double(column), 3 + 2.0 * column - 0.5 * column * column, 1});
  }
  points.push_back({5, 1000, 0});
  const LineCurve curve = FitCurve(points);
  EXPECT_NEAR(curve.factors[0], 3, 1e-6);
  EXPECT_NEAR(curve.factors[1], 2, 1e-6);
  EXPECT_NEAR(curve.factors[2], -0.5, 1e-6);
  EXPECT_NEAR(curve.SlopeAt(2), 0, 1e-6);
  EXPECT_NEAR(curve.From(4).At(3), curve.At(7), 1e-6);
}

TEST(LineCandidates, AreEvenlySpacedGlyphsInPiecesOrBent) {
  const auto bent = [](int column) { return 0.01 * column * column; };
  std::vector<GlyphCandidate> glyphs = GlyphsOf(30, 100, bent);
  glyphs.erase(glyphs.begin() + 10, glyphs.begin() + 14);
  const std::vector<LineCandidate> lines = FindLineCandidates(glyphs);
  ASSERT_THAT(lines, SizeIs(1)) << "pieces of one line are joined";
  EXPECT_THAT(lines[0].glyphs, SizeIs(26));
  EXPECT_NEAR(lines[0].pitch, 20, 0.2);
  EXPECT_EQ(lines[0].line.columns, 30);
  EXPECT_NEAR(lines[0].line.course.At(29).y, 100 + bent(29), 0.5);

  for (std::size_t i = 0; i < glyphs.size(); ++i) {
    glyphs[i].x += static_cast<double>(i * 7 % 19);
  }
  EXPECT_THAT(FindLineCandidates(glyphs), IsEmpty()) << "print of no pitch";
  EXPECT_THAT(FindLineCandidates(GlyphsOf(5, 100, Level)), IsEmpty());
  EXPECT_THAT(FindLineCandidates(GlyphsOf(30, 100, [](int column) { return 6.0 * column; })),
              IsEmpty())
      << "steeper than a scan";
}

TEST(MrzCandidates, AreTwoOrThreeLinesOfAnMrzsDistanceAndLength) {
  const struct {
    const char* why;
    int columns;
    std::vector<double> tops;
    std::size_t groups;
    std::size_t lines;  ///< of the heaviest
  } cases[] = {
      {"TD3", 44, {100, 150}, 1, 2},
      {"TD1 before two of its lines", 30, {100, 150, 200}, 1, 3},
      {"three lines, and each two of them", 36, {100, 150, 200}, 3, 3},
      {"too short for two lines", 30, {100, 150}, 0, 0},
      {"too long", 61, {100, 150}, 0, 0},
      {"too close", 44, {100, 122}, 0, 0},
      {"too far apart", 44, {100, 170}, 0, 0},
  };
  for (const auto& [why, columns, tops, count, lines] : cases) {
    std::vector<GlyphCandidate> glyphs;
    for (const double top : tops) {
      const auto line = GlyphsOf(columns, top, Level);
      glyphs.insert(glyphs.end(), line.begin(), line.end());
    }
    const std::vector<LineCandidate> found = FindLineCandidates(glyphs);
    const std::vector<LineGroup> groups = GroupLines(found);
    ASSERT_THAT(groups, SizeIs(count)) << why;
    if (count > 0) {
      const auto heaviest = std::max_element(
          groups.begin(), groups.end(),
          [](const LineGroup& a, const LineGroup& b) { return a.weight < b.weight; });
      EXPECT_THAT(heaviest->lines, SizeIs(lines)) << why;
    }
  }
}

TEST(MrzCandidates, AreFoundUprightAndRotatedByAQuarter) {
  const PageImage page = PageOfBlocks(44, 2, 50);
  const auto upright = FindMrzCandidates(page);
  ASSERT_THAT(upright, SizeIs(1));
  EXPECT_NEAR(upright[0][1].course.At(0).x, 66, 1);
  EXPECT_NEAR(upright[0][1].course.At(0).y, 160, 1);
  EXPECT_NEAR(upright[0][1].course.PitchAt(20), 20, 0.1);

  const auto rotated = FindMrzCandidates(
      Drawn(page.height, page.width, [&](int x, int y) { return page.Row(x)[y]; }));
  ASSERT_THAT(rotated, SizeIs(1));
  EXPECT_NEAR(std::abs(rotated[0][0].course.StepAt(20).y), 20, 0.1);
  EXPECT_THAT(FindMrzCandidates(PageOfBlocks(20, 2, 50)), IsEmpty());
}

TEST(LineStrip, IsLevelAndOfOnePitch) {
  // A line that climbs: a dark column of pixels in the middle of each character.
  const PageImage page = Drawn(700, 300, [](int x, int y) {
    const double off = y - (200 - 0.2 * x);
    return std::abs(off) < 20 && x % 30 == 15 ? 0 : 255;
  });
  const TextLine line = {{{{15, 30, 0}}, {{197, -6, 0}}}, 20, 20};
  const LineStrip strip = Rectify(page, line, 20, -0.2);
  for (const int column : {0, 10, 19}) {
    const Point centre = strip.course.At(column);
    for (const int down : {-14, 0, 14}) {
      const std::uint8_t* const row = strip.image.Row(static_cast<int>(centre.y) + down);
      const auto* const from = row + static_cast<int>(centre.x) - 8;
      const auto darkest = static_cast<double>(std::min_element(from, from + 16) - row);
      EXPECT_NEAR(darkest, centre.x, 1.5) << column << ' ' << down;
    }
  }
  EXPECT_EQ(strip.course.PitchAt(3), 24);
  const LineStrip upsideDown = UpsideDown(strip);
  EXPECT_EQ(upsideDown.image.luminance.front(), strip.image.luminance.back());
}

constexpr std::uint8_t Typeface[MrzCharacterCount][GlyphSamples] = {
#include "virtual_reader/mrz/OcrBGlyphs.inc"
};

/// A cell with a character of the typeface, moved from its centre, on grey paper.
CellInk CellOf(std::size_t character, std::size_t right, std::size_t down) {
  CellInk cell = {};
  for (auto& row : cell.rows) {
    row.fill(50);
  }
  for (std::size_t i = 0; i < GlyphSamples; ++i) {
    cell.rows[CellMargin + down + i / GlyphWidth][CellMargin + right + i % GlyphWidth] =
        static_cast<std::int16_t>(50 + Typeface[character][i] / 3);
  }
  return cell;
}

TEST(Glyphs, MatchWhereverTheyAreInRangeAndHoweverPale) {
  for (std::size_t character = 0; character < MrzCharacterCount; ++character) {
    const CellInk cell = CellOf(character, 3, 1);
    const GlyphMatch match = MatchGlyphs(cell, 0, {3, 2}, GlyphSamples);
    EXPECT_EQ(match.best, character);
    EXPECT_GT(match.Best(), 0.95F) << MrzCharacters[character];
    EXPECT_EQ(match.x, 3);
    EXPECT_EQ(match.y, 1);
    EXPECT_EQ(MatchGlyph(cell, character, 0, {3, 2}, GlyphSamples), match.Best());
    EXPECT_LT(MatchGlyph(cell, character, 0, {0, 2}, GlyphSamples), match.Best());
  }
  EXPECT_LT(MatchGlyphs({}, 0, {2, 2}, GlyphSamples).Best(), 0.01F) << "blank paper";
}

/// The most similar character of each cell.
std::string TextOf(const std::vector<MrzCell>& line) {
  std::string text;
  for (const MrzCell& cell : line) {
    text += MrzCharacters[static_cast<std::size_t>(std::max_element(cell.begin(), cell.end()) -
                                                   cell.begin())];
  }
  return text;
}

TEST(MrzCells, AreThoseOfThePrintEitherWayUp) {
  const std::string name = std::string(CODELINES_FOLDER) + "/0064-td2-plain";
  PageImage page = DecodeImage(ReadInputFile(name + ".png", 1 << 30));
  const std::string text = ReadInputFile(name + ".txt", 1 << 30);
  for (const bool isUpsideDown : {false, true}) {
    const auto candidates = FindMrzCandidates(page);
    ASSERT_THAT(candidates, testing::Not(IsEmpty())) << isUpsideDown;
    const MrzCells cells = ReadCells(page, candidates[0]);
    ASSERT_THAT(cells.lines, SizeIs(2)) << isUpsideDown;
    EXPECT_EQ(TextOf(cells.lines[0]) + '\n' + TextOf(cells.lines[1]) + '\n', text);
    EXPECT_GT(cells.similarity, 0.9);
    EXPECT_LT(cells.beyond, 0.5);
    std::reverse(page.luminance.begin(), page.luminance.end());
  }
  const PageImage blocks = PageOfBlocks(44, 2, 50);
  EXPECT_FALSE(ReadText(ReadCells(blocks, FindMrzCandidates(blocks).front())).isConfident);
}

}  // namespace
}  // namespace conduit
