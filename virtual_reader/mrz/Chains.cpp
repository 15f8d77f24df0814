#include "virtual_reader/mrz/Chains.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

namespace conduit {
namespace {

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

void SortByX(std::vector<Mark>* marks) {
  std::sort(marks->begin(), marks->end(), [](const Mark& a, const Mark& b) { return a.x < b.x; });
}

void FitLine(Chain* chain) {
  const auto count = static_cast<double>(chain->marks.size());
  double x = 0;
  double y = 0;
  double xx = 0;
  double xy = 0;
  for (const Mark& mark : chain->marks) {
    x += mark.x;
    y += mark.y;
    xx += mark.x * mark.x;
    xy += mark.x * mark.y;
  }
  constexpr double notZero = 1e-9;
  chain->slope = (count * xy - x * y) / std::max(notZero, count * xx - x * x);
  chain->offset = (y - chain->slope * x) / count;
}

/// The length of the mean of unit vectors at the marks' phases in this pitch.
double EvennessAt(const Chain& chain, double pitch) {
  double real = 0;
  double imaginary = 0;
  for (const Mark& mark : chain.marks) {
    const double phase = mark.x / pitch * 2 * std::numbers::pi;
    real += std::cos(phase);
    imaginary += std::sin(phase);
  }
  return std::hypot(real, imaginary) / static_cast<double>(chain.marks.size());
}

void Fit(Chain* chain) {
  SortByX(&chain->marks);
  FitLine(chain);
  std::vector<double> steps;
  std::vector<double> sizes;
  for (std::size_t i = 0; i < chain->marks.size(); ++i) {
    sizes.push_back(chain->marks[i].height);
    if (i > 0) {
      steps.push_back(chain->marks[i].x - chain->marks[i - 1].x);
    }
  }
  chain->size = Median(std::move(sizes));
  const double guess = Median(std::move(steps));
  chain->evenness = 0;
  constexpr int trials = 66;  // of a pitch from 0.9 to 1.1 of the guess
  for (int i = 0; i <= trials; ++i) {
    const double pitch = guess * (0.9 + 0.2 * i / trials);
    if (const double evenness = EvennessAt(*chain, pitch); evenness > chain->evenness) {
      chain->evenness = evenness;
      chain->pitch = pitch;
    }
  }
}

/// What keeps two marks, the right one after the left one, from being neighbours;
/// the less the likelier. Nothing when they are none.
bool AreNeighbours(const Mark& left, const Mark& right, double* cost) {
  const double height = std::max(left.height, right.height);
  const double across = right.x - left.x;
  const double down = std::abs(right.y - left.y);
  *cost = across + 2 * down + 2 * std::abs(left.height - right.height);
  return down <= 0.35 * height && across >= 0.45 * height && across <= 1.9 * height &&
         std::min(left.height, right.height) >= 0.55 * height;
}

/// Strings together the marks that are each other's nearest neighbours.
std::vector<Chain> StringTogether(std::vector<Mark> marks) {
  std::erase_if(marks, [](const Mark& mark) {
    return mark.height < 7 || mark.width > 1.5 * mark.height || mark.width < 0.1 * mark.height;
  });
  SortByX(&marks);
  const std::size_t none = marks.size();
  struct Link {
    std::size_t mark;
    double cost = 1e9;
  };
  std::vector<Link> next(marks.size(), {none});
  std::vector<Link> before(marks.size(), {none});
  for (std::size_t i = 0; i < marks.size(); ++i) {
    for (std::size_t j = i + 1; j < marks.size() && marks[j].x - marks[i].x < 2.2 * marks[i].height;
         ++j) {
      double cost = 0;
      if (!AreNeighbours(marks[i], marks[j], &cost)) {
        continue;
      }
      if (cost < next[i].cost) {
        next[i] = {j, cost};
      }
      if (cost < before[j].cost) {
        before[j] = {i, cost};
      }
    }
  }
  const auto follower = [&](std::size_t i) {
    const std::size_t j = next[i].mark;
    return j != none && before[j].mark == i ? j : none;
  };
  std::vector<Chain> chains;
  for (std::size_t i = 0; i < marks.size(); ++i) {
    if (before[i].mark != none && next[before[i].mark].mark == i) {
      continue;  // in the middle of a chain
    }
    Chain chain;
    for (std::size_t j = i; j != none; j = follower(j)) {
      chain.marks.push_back(marks[j]);
    }
    constexpr std::size_t fewest = 4;
    constexpr double steepest = 0.2;
    if (chain.marks.size() >= fewest) {
      Fit(&chain);
      if (std::abs(chain.slope) < steepest) {
        chains.push_back(std::move(chain));
      }
    }
  }
  return chains;
}

/// Measures how evenly the marks stand on the curve, which a perspective bends.
void MeasureOnCurve(Chain* chain) {
  const TextRow row = RowOf(*chain);
  double real = 0;
  double imaginary = 0;
  double column = 0;
  for (const Mark& mark : chain->marks) {
    constexpr int newtonSteps = 3;
    for (int i = 0; i < newtonSteps; ++i) {
      const double slope = row.x.SlopeAt(column);
      column -= (row.x.At(column) - mark.x) / (std::abs(slope) > 1 ? slope : 1);
    }
    real += std::cos(2 * std::numbers::pi * column);
    imaginary += std::sin(2 * std::numbers::pi * column);
  }
  const double evenness = std::hypot(real, imaginary) / static_cast<double>(chain->marks.size());
  if (evenness > chain->evenness) {
    chain->evenness = evenness;
    chain->pitch = row.x.SlopeAt(row.columns / 2.0);
  }
}

/// Whether two chains are pieces of one row.
bool MayJoin(const Chain& a, const Chain& b) {
  constexpr std::size_t surePitch = 6;
  const bool isRight = b.Left() > a.Right();
  const double gap = isRight ? b.Left() - a.Right() : a.Left() - b.Right();
  const Mark& nearest = isRight ? b.marks.front() : b.marks.back();
  return a.marks.size() >= surePitch && gap > 0 && gap < 14 * a.pitch &&
         std::abs(a.At(nearest.x) - nearest.y) < 0.4 * a.size &&
         std::abs(b.size - a.size) < 0.35 * a.size &&
         (b.marks.size() < surePitch || std::abs(b.pitch - a.pitch) < 0.1 * a.pitch);
}

void JoinPieces(std::vector<Chain>* chains) {
  std::sort(chains->begin(), chains->end(),
            [](const Chain& a, const Chain& b) { return a.marks.size() > b.marks.size(); });
  for (std::size_t i = 0; i < chains->size(); ++i) {
    for (std::size_t j = i + 1; j < chains->size(); ++j) {
      Chain& chain = (*chains)[i];
      const Chain& piece = (*chains)[j];
      if (!MayJoin(chain, piece)) {
        continue;
      }
      Chain joined = chain;
      joined.marks.insert(joined.marks.end(), piece.marks.begin(), piece.marks.end());
      Fit(&joined);
      if (joined.evenness > 0.55 && std::abs(joined.pitch - chain.pitch) < 0.1 * chain.pitch) {
        chain = std::move(joined);
        chains->erase(chains->begin() + static_cast<std::ptrdiff_t>(j));
        j = i;  // what did not reach to the shorter one may reach to this
      }
    }
  }
}

}  // namespace

TextRow RowOf(const Chain& chain) {
  std::vector<CurvePoint> x;
  std::vector<CurvePoint> y;
  double column = 0;
  double pitch = chain.pitch;
  for (std::size_t i = 0; i < chain.marks.size(); ++i) {
    const Mark& mark = chain.marks[i];
    if (i > 0) {
      const double step = mark.x - chain.marks[i - 1].x;
      const double columns = std::max(1.0, std::round(step / pitch));
      column += columns;
      if (std::abs(step / columns - pitch) < 0.2 * pitch) {
        pitch += 0.1 * (step / columns - pitch);
      }
    }
    // Characters that run together have their middle anywhere.
    const double weight = mark.width > 1.25 * chain.pitch ? 0.02 : 1;
    x.push_back({column, mark.x, weight});
    y.push_back({column, mark.y, weight});
  }
  TextRow row = {{}, {}, chain.size, static_cast<int>(column) + 1};
  constexpr int rounds = 4;  // after which what lies off the curve counts no more
  for (int round = 0; round < rounds; ++round) {
    row.x = FitCurve(x);
    row.y = FitCurve(y);
    for (std::size_t i = 0; i < x.size(); ++i) {
      const double off =
          std::hypot(x[i].value - row.x.At(x[i].column), y[i].value - row.y.At(y[i].column)) /
          pitch;
      x[i].weight = y[i].weight = 1 / (1 + 60 * off * off);
    }
  }
  return row;
}

std::vector<Chain> FindChains(std::vector<Mark> marks) {
  std::vector<Chain> chains = StringTogether(std::move(marks));
  JoinPieces(&chains);
  std::for_each(chains.begin(), chains.end(), [](Chain& chain) { MeasureOnCurve(&chain); });
  constexpr std::size_t fewestMarks = 6;
  constexpr double leastEvenness = 0.5;
  std::erase_if(chains, [](const Chain& chain) {
    return chain.marks.size() < fewestMarks || chain.evenness < leastEvenness;
  });
  return chains;
}

}  // namespace conduit
