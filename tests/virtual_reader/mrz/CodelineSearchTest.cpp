#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "virtual_reader/images/ImageDecoding.h"
#include "virtual_reader/mrz/CodelineSearch.h"
#include "virtual_reader/mrz/Glyphs.h"
#include "virtual_reader/mrz/MrzText.h"

namespace conduit {
namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

std::string Read(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

Lines LinesOf(const std::string& text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

/// The pages of draw-pages beside them, of real size, each with what is to be read
/// in a text beside it: nothing of one that is damaged or has no zone.
TEST(CodelineSearch, ReadsWhatIsPrintedOrNothing) {
  int pages = 0;
  for (const auto& entry : std::filesystem::directory_iterator(CODELINES_FOLDER)) {
    std::filesystem::path file = entry.path();
    if (file.extension() != ".png" && file.extension() != ".jpg") {
      continue;
    }
    ++pages;
    const CodelineFindings findings = SearchCodeline(DecodeImage(Read(file)));
    EXPECT_THAT(findings.lines, ElementsAreArray(LinesOf(Read(file.replace_extension(".txt")))))
        << file << testing::PrintToString(findings.failures);
    const bool isDamaged = file.stem().string().find("damaged") != std::string::npos;
    EXPECT_EQ(findings.failures.size(), isDamaged ? 1U : 0U) << file;
  }
  EXPECT_EQ(pages, 13);
}

TEST(CodelineSearch, TakesAnyImage) {
  for (const auto& [width, height] : {std::pair(0, 0), {1, 1}, {3000, 2}, {60, 60}, {2500, 61}}) {
    PageImage image = {width, height, {}};
    std::uint32_t random = 1;
    for (int i = 0; i < width * height; ++i) {
      random = random * 1664525U + 1013904223U;
      image.luminance.push_back(static_cast<std::uint8_t>(random >> 24U));
    }
    EXPECT_THAT(SearchCodeline(image).lines, IsEmpty()) << width << " x " << height;
  }
}

/// What is read rests on them: neither fonts nor libraries of the machine may change one.
/// A cell of a single inked sample shows that sample of each.
TEST(Glyphs, AreTheSameOnEveryMachine) {
  std::uint64_t digest = 0xcbf29ce484222325;  // FNV-1a
  for (int blur = 0; blur < BlurCount; ++blur) {
    for (std::size_t i = 0; i < GlyphSamples; ++i) {
      CellInk cell = {};
      cell.rows[CellMargin + i / GlyphWidth][CellMargin + i % GlyphWidth] = 255;
      for (const float similarity : MatchGlyphs(cell, blur, {0, 0}, 0).similarity) {
        digest ^= static_cast<std::uint64_t>(std::lround(similarity * 10000));
        digest *= 0x100000001b3;
      }
    }
  }
  EXPECT_EQ(digest, 0x433b2b45b43d50fcU);
}

/// A place where another character is nearly as likely, or likelier.
struct Doubt {
  std::size_t line;
  std::size_t column;
  char other;
  float similarity;
};

constexpr float Printed = 0.95F;
constexpr float Unlike = 0.7F;

/// Cells as a clear print of the lines has them, but for the doubts.
MrzCells CellsOf(const Lines& lines, const std::vector<Doubt>& doubts) {
  MrzCells cells;
  cells.similarity = Printed;
  for (const std::string& line : lines) {
    cells.lines.emplace_back();
    for (const char character : line) {
      cells.lines.back().emplace_back().fill(Unlike);
      cells.lines.back().back()[MrzCharacters.find(character)] = Printed;
    }
  }
  for (const Doubt& doubt : doubts) {
    cells.lines[doubt.line][doubt.column][MrzCharacters.find(doubt.other)] = doubt.similarity;
  }
  return cells;
}

const Lines Passport = {"P<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<<<<<<<<<",
                        "L898902C36UTO7408122F1204159ZE184226B<<<<<10"};

TEST(MrzText, IsConfidentOfWhatNothingElseCouldBe) {
  const struct {
    const char* why;
    std::vector<Doubt> doubts;
    bool isConfident;
  } cases[] = {
      {"clear print", {}, true},
      {"a letter is no digit's place", {{1, 13, 'T', 0.97F}}, true},
      {"a digit is no letter's place", {{0, 6, '8', 0.97F}}, true},
      {"I for C in a number is told by the check digits", {{1, 7, 'I', 0.935F}}, true},
      {"but not when it is as likely", {{1, 7, 'I', 0.945F}}, false},
      {"D for 3 is not told", {{1, 8, 'D', 0.93F}}, false},
      {"nothing tells names", {{0, 6, 'B', 0.93F}}, false},
      {"nor where they end", {{0, 25, 'K', 0.93F}}, false},
      {"a weak cell", {{1, 3, '8', 0.69F}, {1, 3, '9', 0.60F}}, false},
      {"mended: a digit hardly preferred to the right one", {{1, 3, '3', 0.97F}}, true},
      {"two digits", {{1, 3, '3', 0.96F}, {1, 15, '1', 0.96F}}, true},
      {"not mended: the wrong one was sure", {{1, 3, '3', 1.04F}}, false},
      {"two ways to mend it", {{1, 3, '3', 0.97F}, {1, 5, '5', 0.94F}}, false},
  };
  for (const auto& [why, doubts, isConfident] : cases) {
    MrzCells cells = CellsOf(Passport, doubts);
    if (std::string(why) == "a weak cell") {
      cells.lines[1][3].fill(0.5F);
      cells.lines[1][3][MrzCharacters.find('9')] = 0.69F;
    }
    const MrzText reading = ReadText(cells);
    EXPECT_EQ(reading.isConfident, isConfident) << why;
    if (isConfident) {
      EXPECT_THAT(reading.lines, ElementsAreArray(Passport)) << why;
    }
  }
}

TEST(MrzText, LeavesAMisprintAsItIsPrinted) {
  Lines misprint = Passport;
  misprint[1][9] = '0';
  EXPECT_TRUE(ReadText(CellsOf(misprint, {})).isConfident);
  EXPECT_THAT(ReadText(CellsOf(misprint, {})).lines, ElementsAreArray(misprint));
  EXPECT_FALSE(ReadText(CellsOf(misprint, {{0, 6, 'B', 0.87F}})).isConfident)
      << "nothing vouches for it";
}

TEST(MrzText, KnowsTheFormatsByTheirShapesAndTheirFirstLetter) {
  const Lines zones[] = {
      {"I<UTOD231458907<<<<<<<<<<<<<<<", "7408122F1204159UTO<<<<<<<<<<<6",
       "ERIKSSON<<ANNA<MARIA<<<<<<<<<<"},
      // A number too long for its field.
      {"I<UTOD23145890<7349<<<<<<<<<<<", "3407127M9507122UTO<<<<<<<<<<<2",
       "STEVENSON<<PETER<JOHN<<<<<<<<<"},
      {"I<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<", "D231458907UTO7408122F1204159<<<<<<<6"},
      {"V<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<", "L8988901C4XXX4009078F9612109<<<<<<<<"},
      {"V<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<<<<<<<<<",
       "L8988901C4XXX4009078F96121096ZE184226B<<<<<<"},
  };
  for (const Lines& zone : zones) {
    const MrzText reading = ReadText(CellsOf(zone, {}));
    EXPECT_TRUE(reading.isConfident) << zone[0];
    EXPECT_THAT(reading.lines, ElementsAreArray(zone));
  }
  EXPECT_FALSE(ReadText({}).isConfident);
  MrzCells torn = CellsOf(zones[3], {});
  torn.beyond = 0.9;
  EXPECT_FALSE(ReadText(torn).isConfident) << "what goes on is a longer zone";
}

}  // namespace
}  // namespace conduit
