#include "virtual_reader/mrz/ZoneText.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "virtual_reader/records/CodelineFormat.h"

namespace conduit {
namespace {

using Lines = std::vector<std::string>;

// What likeness it takes for a reading to be sure. docs/performance.md has what was
// measured with these.
constexpr double LeastLikeness = 0.70;      ///< of the weakest cell
constexpr double FurthestBelowMean = 0.20;  ///< of the weakest cell
/// In print that is this like the typeface, a cell further below the mean is damaged, and
/// what is left of an E may well be an F.
constexpr double LikenessOfGoodPrint = 0.92;
constexpr double FurthestInGoodPrint = 0.09;
constexpr double MostBeyond = 0.5;       ///< of what stands before or behind a line
constexpr double LeastLead = 0.033;      ///< over what the check digits let pass
constexpr double LeastMargin = 0.0125;   ///< over anything else
constexpr double DearestRepair = 0.05;   ///< of likeness that is given up
constexpr double LeadOfRepair = 0.03;    ///< over the next way to mend it
constexpr double LeadOfMisprint = 0.10;  ///< over anything else, with no check digit's help

/// What may stand in a place.
enum class Kind : char {
  Any,
  Letter,  ///< or a filler
  Digit,
  DigitOrFiller,
  Sex,
  DocumentCode,  ///< what the first letter of a document code is
};

bool IsAllowed(Kind kind, char character) {
  const bool isDigit = character >= '0' && character <= '9';
  switch (kind) {
    case Kind::Letter:
      return !isDigit;
    case Kind::Digit:
      return isDigit;
    case Kind::DigitOrFiller:
      return isDigit || character == '<';
    case Kind::Sex:
      return std::string_view("MFX<").find(character) != std::string_view::npos;
    case Kind::DocumentCode:
      return std::string_view("PVIACD").find(character) != std::string_view::npos;
    case Kind::Any:
      break;
  }
  return true;
}

/// What the format admits in each place.
class Grammar {
 public:
  explicit Grammar(const CodelineFormat& format)
      : kinds(format.lines, std::vector<Kind>(format.width, Kind::Any)) {
    kinds[0][0] = Kind::DocumentCode;
    constexpr CodelineSpan issuingState = {0, 2, 3};
    Put(issuingState, Kind::Letter);
    Put(format.names, Kind::Letter);
    Put(format.nationality, Kind::Letter);
    Put(format.sex, Kind::Sex);
    for (const CodelineSpan& date : {format.birth, format.expiry}) {
      Put(date, Kind::DigitOrFiller);
      At(BehindSpan(date)) = Kind::Digit;
    }
    At(BehindSpan(format.number)) = format.longNumbers ? Kind::DigitOrFiller : Kind::Digit;
    if (format.checksOptional) {
      At(BehindSpan(format.optional1)) = Kind::DigitOrFiller;
    }
    if (!format.composite.empty()) {
      kinds[1].back() = Kind::Digit;
    }
  }

  Kind KindOf(CodelinePlace place) const { return kinds[place.line][place.column]; }

 private:
  Kind& At(CodelinePlace place) { return kinds[place.line][place.column]; }

  void Put(CodelineSpan span, Kind kind) {
    std::fill_n(kinds[span.line].begin() + static_cast<std::ptrdiff_t>(span.column), span.length,
                kind);
  }

  std::vector<std::vector<Kind>> kinds;
};

float LikenessOf(const ZoneCell& cell, char character) {
  return cell[ZoneCharacters.find(character)];
}

/// The format of the zone's shape. Visas are of the same shapes as other documents,
/// and told by their first letter.
const CodelineFormat* FormatOf(const ZoneCells& cells) {
  const ZoneCell& first = cells.lines[0][0];
  const float visa = LikenessOf(first, 'V');
  const bool isVisa =
      cells.lines.size() == 2 && std::ranges::all_of(std::string_view("PIACD"), [&](char other) {
        return visa > LikenessOf(first, other);
      });
  for (const CodelineFormat& format : CodelineFormats()) {
    if (format.lines == cells.lines.size() && format.width == cells.lines[0].size() &&
        format.visa == isVisa) {
      return &format;
    }
  }
  return nullptr;
}

/// Another character in one place, and what likeness is given up for it.
struct Change {
  CodelinePlace place;
  char character;
  double cost;
};

class TextReading {
 public:
  TextReading(const ZoneCells& cells, const CodelineFormat& format)
      : cells(cells), format(format), grammar(format) {}

  ZoneReading Read() {
    ReadBest();
    ZoneReading reading = {lines, false};
    if (!ChecksMatch(lines)) {
      isMended = Mend(&reading.lines);
    }
    // Print that goes on beyond the zone is of a longer one, torn or covered.
    const double furthest =
        cells.likeness > LikenessOfGoodPrint ? FurthestInGoodPrint : FurthestBelowMean;
    reading.isSure = cells.beyond < MostBeyond &&
                     weakest > std::max(LeastLikeness, cells.likeness - furthest) &&
                     (ChecksMatch(reading.lines) ? IsSure(reading.lines) : IsSureMisprint());
    return reading;
  }

 private:
  bool ChecksMatch(const Lines& text) const {
    const std::vector<CodelineCheck> checks = CodelineChecks(format, text);
    return std::all_of(checks.begin(), checks.end(),
                       [&text](const CodelineCheck& check) { return IsMet(check, text); });
  }

  const ZoneCell& CellAt(CodelinePlace place) const {
    return cells.lines[place.line][place.column];
  }

  template <typename Visit>
  void ForEachPlace(const Visit& visit) const {
    for (std::size_t line = 0; line < format.lines; ++line) {
      for (std::size_t column = 0; column < format.width; ++column) {
        visit(CodelinePlace{line, column});
      }
    }
  }

  /// In each place the likeliest of the characters that may stand there.
  void ReadBest() {
    lines.assign(format.lines, std::string(format.width, '<'));
    ForEachPlace([this](CodelinePlace place) {
      const Kind kind = grammar.KindOf(place);
      float best = -1;
      float second = -1;
      for (const char character : ZoneCharacters) {
        const float likeness = LikenessOf(CellAt(place), character);
        if (IsAllowed(kind, character)) {
          second = std::max(second, std::min(best, likeness));
          if (likeness > best) {
            best = likeness;
            lines[place.line][place.column] = character;
          }
        }
      }
      weakest = std::min<double>(weakest, best);
      margin = std::min<double>(margin, best - second);
    });
  }

  std::vector<Change> CheapChanges() const {
    std::vector<Change> changes;
    ForEachPlace([&](CodelinePlace place) {
      const char own = lines[place.line][place.column];
      for (const char other : ZoneCharacters) {
        const double cost = LikenessOf(CellAt(place), own) - LikenessOf(CellAt(place), other);
        if (other != own && cost < 2 * DearestRepair && IsAllowed(grammar.KindOf(place), other)) {
          changes.push_back({place, other, cost});
        }
      }
    });
    std::sort(changes.begin(), changes.end(),
              [](const Change& a, const Change& b) { return a.cost < b.cost; });
    constexpr std::size_t most = 150;
    changes.resize(std::min(changes.size(), most));
    return changes;
  }

  /// Makes the cheapest change, of one character or two, that lets all check digits
  /// match; none where another would be about as cheap.
  bool Mend(Lines* text) const {
    const std::vector<Change> changes = CheapChanges();
    double cheapest = DearestRepair;
    double next = 1;
    bool found = false;
    const auto consider = [&](const Lines& tried, double cost) {
      if (cost >= next || !ChecksMatch(tried)) {
        return;
      }
      next = cost < cheapest ? (found ? cheapest : next) : cost;
      if (cost < cheapest) {
        cheapest = cost;
        found = true;
        *text = tried;
      }
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
      const Lines one = With(lines, changes[i]);
      consider(one, changes[i].cost);
      for (std::size_t j = i + 1; j < changes.size(); ++j) {
        const double cost = changes[i].cost + changes[j].cost;
        const bool isSamePlace = changes[i].place.line == changes[j].place.line &&
                                 changes[i].place.column == changes[j].place.column;
        if (cost >= 2 * DearestRepair) {
          break;
        }
        if (!isSamePlace) {
          consider(With(one, changes[j]), cost);
        }
      }
    }
    if (found && next - cheapest < LeadOfRepair) {
      *text = lines;
      found = false;
    }
    return found;
  }

  static Lines With(Lines text, const Change& change) {
    text[change.place.line][change.place.column] = change.character;
    return text;
  }

  /// With the check digits matching: whether nothing is near that they would let
  /// pass as well.
  bool IsSure(const Lines& text) const {
    return (isMended || margin > LeastMargin) && LeadOf(text) > LeastLead;
  }

  /// With a check digit that does not match: no character may be in doubt, for then
  /// it is the print that is wrong.
  bool IsSureMisprint() const { return margin > LeadOfMisprint; }

  double LeadOf(const Lines& text) const {
    std::vector<std::vector<bool>> checked(format.lines, std::vector<bool>(format.width));
    for (const CodelineCheck& check : CodelineChecks(format, text)) {
      checked[check.digit.line][check.digit.column] = true;
      for (const CodelinePlace& place : check.covered) {
        checked[place.line][place.column] = true;
      }
    }
    double lead = 1;
    ForEachPlace([&](CodelinePlace place) {
      const Kind kind = grammar.KindOf(place);
      const char own = text[place.line][place.column];
      for (const char other : ZoneCharacters) {
        const bool isTold = checked[place.line][place.column] &&
                            (CheckValueOf(other) - CheckValueOf(own)) % 10 != 0;
        // What a document code may begin with is unlike each other.
        if (other != own && !isTold && kind != Kind::DocumentCode && IsAllowed(kind, other)) {
          lead = std::min<double>(
              lead, LikenessOf(CellAt(place), own) - LikenessOf(CellAt(place), other));
        }
      }
    });
    return lead;
  }

  const ZoneCells& cells;
  const CodelineFormat& format;
  const Grammar grammar;
  Lines lines;         ///< the likeliest
  double weakest = 1;  ///< likeness of a cell to its character
  double margin = 1;   ///< the least lead of a cell over any other character
  bool isMended = false;
};

}  // namespace

ZoneReading ReadText(const ZoneCells& cells) {
  const CodelineFormat* const format = cells.lines.empty() ? nullptr : FormatOf(cells);
  return format != nullptr ? TextReading(cells, *format).Read() : ZoneReading();
}

}  // namespace conduit
