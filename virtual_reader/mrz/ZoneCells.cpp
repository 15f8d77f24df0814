#include "virtual_reader/mrz/ZoneCells.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <numeric>
#include <optional>
#include <utility>

#include "virtual_reader/mrz/LineStrip.h"

namespace conduit {
namespace {

/// The same curve, counted from another column.
RowCurve BegunAt(const RowCurve& curve, double column) {
  return {{curve.At(column), curve.SlopeAt(column), curve.factors[2]}};
}

/// Of a cell that is like nothing.
constexpr int NoCharacter = -1;

/// The lines of what may be a zone, and what is known of their print. It is come to
/// know step by step: what is sure of a cell tells where the others are.
class ZoneLines {
 public:
  /// @param slant  how far the page is taken to lean
  ZoneLines(const PageImage& page, const RowGroup& group, double slant) {
    double size = 0;
    double pitch = 0;
    for (const TextRow& row : group) {
      columns = std::max(columns, row.columns);
      const double middle = row.columns / 2.0;
      size += row.size;
      pitch += std::hypot(row.x.SlopeAt(middle), row.y.SlopeAt(middle));
    }
    for (const TextRow& row : group) {
      strips.push_back(Straighten(page, row, columns, slant));
    }
    // A capital of OCR-B is about as high as its pitch.
    look.height = std::clamp(size / pitch / 0.99, 0.75, 1.3);
    look.width = std::clamp(look.height, 0.85, 1.15);
    EstimateNoise();
  }

  ZoneLines OnItsHead() const {
    ZoneLines turned = *this;
    std::reverse(turned.strips.begin(), turned.strips.end());
    for (LineStrip& strip : turned.strips) {
      strip = UpsideDown(std::move(strip));
    }
    return turned;
  }

  int Columns() const { return columns; }
  std::size_t Lines() const { return strips.size(); }

  GlyphMatch MatchAt(std::size_t line, int column, Reach reach) const {
    return MatchGlyphs(InkAt(strips[line], column, look), look.blur, reach, noise);
  }

  /// Looks at every so many cells, remembers what is sure, and moves the courses to
  /// where the characters are. Returns the mean likeness.
  double Align(Reach reach, int every = 1) {
    double sum = 0;
    int count = 0;
    known.assign(Lines(), std::vector<int>(static_cast<std::size_t>(columns), NoCharacter));
    for (std::size_t line = 0; line < Lines(); ++line) {
      std::vector<CurvePoint> along;
      std::vector<CurvePoint> across;
      for (int column = static_cast<int>(line) % every; column < columns; column += every) {
        const GlyphMatch match = MatchAt(line, column, reach);
        sum += match.Best();
        ++count;
        constexpr float sure = 0.5;
        if (match.Best() >= sure) {
          known[line][static_cast<std::size_t>(column)] = static_cast<int>(match.best);
          const double weight = std::pow(match.Best() - 0.45, 2);
          along.push_back({static_cast<double>(column), match.x * look.width / GlyphWidth, weight});
          across.push_back(
              {static_cast<double>(column), match.y * look.height / GlyphWidth, weight});
        }
      }
      constexpr std::size_t enoughForACurve = 8;
      if (along.size() >= enoughForACurve) {
        Move(&strips[line].course, std::move(along), std::move(across));
      }
    }
    return sum / count;
  }

  /// Tries sizes of the print by these factors, then how far it leans, then degrees
  /// of blur.
  void Tune(std::initializer_list<double> factors, double furthestLean, int every, Reach reach) {
    const PrintLook start = look;
    double best = -1;
    const auto attempt = [&](const PrintLook& tried) {
      if (const double fit = Fit(tried, every, reach); fit > best) {
        best = fit;
        look = tried;
      }
    };
    for (const double factor : factors) {
      attempt({start.width, start.height * factor, start.lean, start.blur});
    }
    const PrintLook high = look;
    for (const double factor : factors) {
      attempt({start.width * factor, high.height, high.lean, high.blur});
    }
    const PrintLook wide = look;
    for (const double part : {-1.0, -0.5, 0.5, 1.0}) {
      attempt({wide.width, wide.height, wide.lean + part * furthestLean, wide.blur});
    }
    const PrintLook sized = look;
    for (int blur = 0; blur < BlurCount; ++blur) {
      if (blur != sized.blur) {
        attempt({sized.width, sized.height, sized.lean, blur});
      }
    }
  }

  /// Lets each line begin at its column, and all have as many.
  void Cut(const std::vector<int>& begins, int newColumns) {
    for (std::size_t line = 0; line < Lines(); ++line) {
      for (RowCurve* const curve : {&strips[line].course.x, &strips[line].course.y}) {
        *curve = BegunAt(*curve, begins[line]);
      }
    }
    columns = newColumns;
  }

 private:
  /// How well the known cells fit what they were taken for.
  double Fit(const PrintLook& tried, int every, Reach reach) const {
    double sum = 0;
    int count = 0;
    for (std::size_t line = 0; line < Lines(); ++line) {
      for (int column = static_cast<int>(line) % every; column < columns; column += every) {
        const int character = known[line][static_cast<std::size_t>(column)];
        if (character != NoCharacter) {
          sum += MatchGlyph(InkAt(strips[line], column, tried), static_cast<std::size_t>(character),
                            tried.blur, reach, noise);
          ++count;
        }
      }
    }
    return count > 0 ? sum / count : -1;
  }

  /// @param along, across  how far the characters are off, in pitches
  static void Move(LineCourse* course, std::vector<CurvePoint> along,
                   std::vector<CurvePoint> across) {
    RowCurve alongCurve;
    RowCurve acrossCurve;
    constexpr int rounds = 3;
    for (int round = 0; round < rounds; ++round) {
      alongCurve = FitCurve(along);
      acrossCurve = FitCurve(across);
      for (std::size_t i = 0; i < along.size(); ++i) {
        constexpr double farOff = 0.11;  // such a cell was taken for another character
        const double off = std::hypot(along[i].value - alongCurve.At(along[i].column),
                                      across[i].value - acrossCurve.At(across[i].column));
        if (off > farOff) {
          along[i].weight *= 0.2;
          across[i].weight *= 0.2;
        }
      }
    }
    const double pitchX = course->x.factors[1];
    const double pitchY = course->y.factors[1];
    for (std::size_t i = 0; i < 3; ++i) {
      course->x.factors[i] += alongCurve.factors[i] * pitchX - acrossCurve.factors[i] * pitchY;
      course->y.factors[i] += alongCurve.factors[i] * pitchY + acrossCurve.factors[i] * pitchX;
    }
  }

  /// Takes a part of what a typical cell varies by for noise.
  void EstimateNoise() {
    std::vector<double> variations;
    for (const LineStrip& strip : strips) {
      constexpr int every = 3;
      for (int column = 0; column < columns; column += every) {
        const CellInk ink = InkAt(strip, column, look);
        double sum = 0;
        double squares = 0;
        for (int j = CellMargin; j < CellMargin + GlyphHeight; ++j) {
          for (int i = CellMargin; i < CellMargin + GlyphWidth; ++i) {
            const double sample =
                ink.rows[static_cast<std::size_t>(j)][static_cast<std::size_t>(i)];
            sum += sample;
            squares += sample * sample;
          }
        }
        variations.push_back(squares - sum * sum / GlyphSamples);
      }
    }
    const auto middle = variations.begin() + static_cast<std::ptrdiff_t>(variations.size() / 2);
    std::nth_element(variations.begin(), middle, variations.end());
    noise = 0.02 * *middle + GlyphSamples;
  }

  std::vector<LineStrip> strips;
  PrintLook look;
  double noise = 0;
  int columns = 0;
  std::vector<std::vector<int>> known;  ///< the character of each cell, or NoCharacter
};

/// The row with its first column so many columns further.
TextRow Shifted(TextRow row, double columns) {
  for (RowCurve* const curve : {&row.x, &row.y}) {
    *curve = BegunAt(*curve, columns);
  }
  return row;
}

/// The rows as they begin below each other: of one, the first characters may not have
/// been found.
RowGroup BegunTogether(RowGroup group) {
  const TextRow longest =
      *std::max_element(group.begin(), group.end(),
                        [](const TextRow& a, const TextRow& b) { return a.columns < b.columns; });
  const double middle = longest.columns / 2.0;
  const double alongX = longest.x.SlopeAt(middle);
  const double alongY = longest.y.SlopeAt(middle);
  const double pitch = std::hypot(alongX, alongY);
  for (TextRow& row : group) {
    const double ahead =
        ((longest.x.At(0) - row.x.At(0)) * alongX + (longest.y.At(0) - row.y.At(0)) * alongY) /
        (pitch * pitch);
    constexpr double further = 2;  // what a leaning page makes, or the search along the line finds
    if (std::abs(ahead) > further) {
      row = Shifted(row, std::round(ahead));
    }
  }
  return group;
}

/// Lines end where the edge of the paper would: how far those ends are off the
/// upright tells how much the page leans.
double SlantOf(const RowGroup& group) {
  double slant = 0;
  int count = 0;
  for (std::size_t i = 0; i + 1 < group.size(); ++i) {
    const TextRow& above = group[i];
    const TextRow& below = group[i + 1];
    if (above.columns == below.columns) {
      const double middle = above.columns / 2.0;
      const double x = below.x.At(middle) - above.x.At(middle);
      const double y = below.y.At(middle) - above.y.At(middle);
      const double alongX = above.x.SlopeAt(middle);
      const double alongY = above.y.SlopeAt(middle);
      slant += (x * alongX + y * alongY) / (y * alongX - x * alongY);
      ++count;
    }
  }
  constexpr double most = 0.45;
  return count > 0 ? std::clamp(slant / count, -most, most) : 0;
}

/// The lines as they are most like print: either way up, leaning or not. Nothing
/// when they are not like any.
std::optional<ZoneLines> TheRightWay(const PageImage& page, const RowGroup& group) {
  std::optional<ZoneLines> best;
  double likeness = 0.4;
  std::vector<double> slants = {0};
  if (const double slant = SlantOf(group); slant != 0) {
    slants.push_back(slant);
  }
  const RowGroup begun = BegunTogether(group);
  for (const double slant : slants) {
    constexpr double clear = 0.8;
    if (likeness > clear) {
      break;
    }
    const ZoneLines lines(page, begun, slant);
    for (const ZoneLines& tried : {lines, lines.OnItsHead()}) {
      constexpr Reach far = {4, 4, 2};
      constexpr int everyFifth = 5;
      if (const double own = ZoneLines(tried).Align(far, everyFifth); own > likeness) {
        likeness = own;
        best = tried;
      }
    }
  }
  return best;
}

/// Finds where each line begins, and which length of Doc 9303 they have: a piece may
/// be missing of the rows that were found, or something else stand at either end.
/// Returns whether there is such a length.
bool CutToFormat(ZoneLines* zone) {
  std::vector<std::vector<double>> likeness(zone->Lines());
  for (std::size_t line = 0; line < zone->Lines(); ++line) {
    for (int column = -StripBefore; column < zone->Columns() + StripBefore; ++column) {
      constexpr double ofPrint = 0.6;
      likeness[line].push_back(zone->MatchAt(line, column, {2, 2, 2}).Best() - ofPrint);
    }
  }
  const std::vector<int> lengths =
      zone->Lines() == 3 ? std::vector<int>{30} : std::vector<int>{36, 44};
  double best = 0;
  int columns = 0;
  std::vector<int> begins;
  for (const int length : lengths) {
    if (length > zone->Columns() + 2 * StripBefore) {
      continue;
    }
    double sum = 0;
    std::vector<int> tried;
    for (const std::vector<double>& line : likeness) {
      double most = 0;
      int begin = 0;
      for (int at = 0; at + length <= static_cast<int>(line.size()); ++at) {
        const double own = std::accumulate(line.begin() + at, line.begin() + at + length, 0.0);
        if (at == 0 || own > most) {
          most = own;
          begin = at - StripBefore;
        }
      }
      sum += most;
      tried.push_back(begin);
    }
    if (columns == 0 || sum > best) {
      best = sum;
      columns = length;
      begins = std::move(tried);
    }
  }
  if (columns > 0) {
    zone->Cut(begins, columns);
  }
  return columns > 0;
}

}  // namespace

ZoneCells ReadCells(const PageImage& page, const RowGroup& group) {
  std::optional<ZoneLines> zone = TheRightWay(page, group);
  if (!zone) {
    return {};
  }
  zone->Align({4, 4, 2});
  zone->Tune({0.88, 0.94, 1.0, 1.06, 1.12}, 0.16, 3, {2, 2});
  zone->Align({2, 2});
  zone->Tune({0.97, 1.0, 1.03}, 0.04, 2, {1, 1});
  if (!CutToFormat(&*zone)) {
    return {};
  }
  zone->Align({2, 2});
  zone->Tune({0.985, 1.0, 1.015}, 0.02, 2, {1, 1});
  zone->Align({1, 1});
  ZoneCells cells;
  for (std::size_t line = 0; line < zone->Lines(); ++line) {
    cells.lines.emplace_back();
    for (int column = 0; column < zone->Columns(); ++column) {
      const GlyphMatch match = zone->MatchAt(line, column, {2, 1});
      cells.lines.back().push_back(match.likeness);
      cells.likeness += match.Best();
    }
  }
  for (std::size_t line = 0; line < zone->Lines(); ++line) {
    for (const int column : {-1, zone->Columns()}) {
      cells.beyond = std::max<double>(cells.beyond, zone->MatchAt(line, column, {2, 1}).Best());
    }
  }
  cells.likeness /= static_cast<double>(zone->Lines()) * zone->Columns();
  return cells;
}

}  // namespace conduit
