#include "virtual_reader/mrz/MrzText.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "virtual_reader/records/CodelineFormat.h"

namespace conduit {
namespace {

using Lines = std::vector<std::string>;

// Similarities that a confident result takes. They were chosen on pages of
// tests/virtual_reader/mrz/draw-pages, seed 11, and on damaged ones of seed 500;
// docs/performance.md has what was measured with them.
constexpr double LeastSimilarity = 0.70;    ///< of the weakest cell
constexpr double FurthestBelowMean = 0.20;  ///< of the weakest cell
/// In print that is this similar to the typeface, a cell further below the mean is damaged, and
/// what is left of an E may well be an F.
constexpr double SimilarityOfGoodPrint = 0.92;
constexpr double FurthestInGoodPrint = 0.09;
constexpr double MostBeyond = 0.5;          ///< of the places before and after a line
constexpr double LeastLead = 0.033;         ///< over a character that the check digits let pass
constexpr double LeastMargin = 0.0125;      ///< over any other character
constexpr double DearestCorrection = 0.05;  ///< similarity that corrections give up
constexpr double LeadOfCorrection = 0.03;   ///< over the next best corrections
constexpr double LeadOfMisprint = 0.10;  ///< over any other character, without a check digit's help
/// Changes of one character that are tried alone and in pairs: bounds the time.
constexpr std::size_t MostChanges = 150;

/// The characters that a position admits.
enum class Kind : char {
  Any,
  Letter,  ///< or a filler
  Digit,
  DigitOrFiller,
  Sex,
  DocumentCode,  ///< the first letter of one
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

/// The kinds of characters that a format admits in each position.
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

float SimilarityOf(const MrzCell& cell, char character) {
  return cell[MrzCharacters.find(character)];
}

/// Returns the format with as many and as long lines. Visas are told from other documents of the
/// same size by their first letter.
const CodelineFormat* FormatOf(const MrzCells& cells) {
  const MrzCell& first = cells.lines[0][0];
  const float visa = SimilarityOf(first, 'V');
  const bool isVisa =
      cells.lines.size() == 2 && std::ranges::all_of(std::string_view("PIACD"), [&](char other) {
        return visa > SimilarityOf(first, other);
      });
  for (const CodelineFormat& format : CodelineFormats()) {
    if (format.lines == cells.lines.size() && format.width == cells.lines[0].size() &&
        format.visa == isVisa) {
      return &format;
    }
  }
  return nullptr;
}

/// Another character in one position, and the similarity that it gives up.
struct Change {
  CodelinePlace place;
  char character;
  double cost;
};

class TextReading {
 public:
  TextReading(const MrzCells& cells, const CodelineFormat& format)
      : cells(cells), format(format), grammar(format) {}

  MrzText Read() {
    ReadBest();
    MrzText reading = {lines, false};
    if (!ChecksMatch(lines)) {
      isCorrected = Correct(&reading.lines);
    }
    // Print that goes on beyond the lines is of a longer MRZ, torn or covered.
    const double furthest =
        cells.similarity > SimilarityOfGoodPrint ? FurthestInGoodPrint : FurthestBelowMean;
    reading.isConfident =
        cells.beyond < MostBeyond &&
        weakest > std::max(LeastSimilarity, cells.similarity - furthest) &&
        (ChecksMatch(reading.lines) ? IsConfident(reading.lines) : IsConfidentMisprint());
    return reading;
  }

 private:
  bool ChecksMatch(const Lines& text) const {
    const std::vector<CodelineCheck> checks = CodelineChecks(format, text);
    return std::all_of(checks.begin(), checks.end(),
                       [&text](const CodelineCheck& check) { return IsMet(check, text); });
  }

  const MrzCell& CellAt(CodelinePlace place) const { return cells.lines[place.line][place.column]; }

  template <typename Visit>
  void ForEachPlace(const Visit& visit) const {
    for (std::size_t line = 0; line < format.lines; ++line) {
      for (std::size_t column = 0; column < format.width; ++column) {
        visit(CodelinePlace{line, column});
      }
    }
  }

  /// Chooses in each position the most similar character that it admits.
  void ReadBest() {
    lines.assign(format.lines, std::string(format.width, '<'));
    ForEachPlace([this](CodelinePlace place) {
      const Kind kind = grammar.KindOf(place);
      float best = -1;
      float second = -1;
      for (const char character : MrzCharacters) {
        const float similarity = SimilarityOf(CellAt(place), character);
        if (IsAllowed(kind, character)) {
          second = std::max(second, std::min(best, similarity));
          if (similarity > best) {
            best = similarity;
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
      for (const char other : MrzCharacters) {
        const double cost = SimilarityOf(CellAt(place), own) - SimilarityOf(CellAt(place), other);
        if (other != own && cost < 2 * DearestCorrection &&
            IsAllowed(grammar.KindOf(place), other)) {
          changes.push_back({place, other, cost});
        }
      }
    });
    std::sort(changes.begin(), changes.end(),
              [](const Change& a, const Change& b) { return a.cost < b.cost; });
    changes.resize(std::min(changes.size(), MostChanges));
    return changes;
  }

  /// Makes the cheapest change, of one character or two, with which all check digits match; none
  /// where another is about as cheap.
  bool Correct(Lines* text) const {
    const std::vector<Change> changes = CheapChanges();
    double cheapest = DearestCorrection;
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
        if (cost >= 2 * DearestCorrection) {
          break;
        }
        if (!isSamePlace) {
          consider(With(one, changes[j]), cost);
        }
      }
    }
    if (found && next - cheapest < LeadOfCorrection) {
      *text = lines;
      found = false;
    }
    return found;
  }

  static Lines With(Lines text, const Change& change) {
    text[change.place.line][change.place.column] = change.character;
    return text;
  }

  /// With matching check digits: returns whether no text is near that they let pass as well.
  bool IsConfident(const Lines& text) const {
    return (isCorrected || margin > LeastMargin) && LeadOf(text) > LeastLead;
  }

  /// With a check digit that does not match: each character must be certain, as then the print is
  /// wrong.
  bool IsConfidentMisprint() const { return margin > LeadOfMisprint; }

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
      for (const char other : MrzCharacters) {
        const bool isTold = checked[place.line][place.column] &&
                            (CheckValueOf(other) - CheckValueOf(own)) % 10 != 0;
        // The letters that begin document codes are unlike each other.
        if (other != own && !isTold && kind != Kind::DocumentCode && IsAllowed(kind, other)) {
          lead = std::min<double>(
              lead, SimilarityOf(CellAt(place), own) - SimilarityOf(CellAt(place), other));
        }
      }
    });
    return lead;
  }

  const MrzCells& cells;
  const CodelineFormat& format;
  const Grammar grammar;
  Lines lines;         ///< the most similar
  double weakest = 1;  ///< similarity of a cell to its character
  double margin = 1;   ///< the least lead of a cell over any other character
  bool isCorrected = false;
};

}  // namespace

MrzText ReadText(const MrzCells& cells) {
  const CodelineFormat* const format = cells.lines.empty() ? nullptr : FormatOf(cells);
  return format != nullptr ? TextReading(cells, *format).Read() : MrzText();
}

}  // namespace conduit
