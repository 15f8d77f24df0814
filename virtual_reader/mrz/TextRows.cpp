#include "virtual_reader/mrz/TextRows.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "virtual_reader/pixels/Sampling.h"

namespace conduit {
namespace {

/// Rows are looked for on at most so many pixels along the longer side, on which a
/// character of an A4 page still has fifteen.
constexpr int LongestSide = 2000;

/// Marks as they stand once the page is turned by a quarter.
std::vector<Mark> Turned(std::vector<Mark> marks) {
  for (Mark& mark : marks) {
    mark = {mark.y, -mark.x, mark.height, mark.width};
  }
  return marks;
}

TextRow TurnedBack(TextRow row) {
  std::swap(row.x, row.y);
  for (double& factor : row.x.factors) {
    factor = -factor;
  }
  return row;
}

/// The row of the reduced page on the page itself.
TextRow Enlarged(TextRow row, int factor) {
  for (RowCurve* const curve : {&row.x, &row.y}) {
    for (double& one : curve->factors) {
      one *= factor;
    }
    curve->factors[0] += (factor - 1) / 2.0;
  }
  row.size *= factor;
  return row;
}

/// Finds the groups among chains of one direction.
class Grouping {
 public:
  struct Found {
    std::vector<const Chain*> chains;
    double weight;
  };

  explicit Grouping(const std::vector<Chain>& chains) : chains(chains) {}

  std::vector<Found> Find() {
    for (const Chain& seed : chains) {
      constexpr std::size_t fewestOfALine = 12;
      if (seed.marks.size() >= fewestOfALine) {
        const std::vector<Neighbour> stack = StackAround(seed);
        FindIn(stack, seed, 3);
        FindIn(stack, seed, 2);
      }
    }
    return std::move(found);
  }

 private:
  struct Neighbour {
    double distance;
    const Chain* chain;
  };

  /// Everything that runs along a chain, from above to below.
  std::vector<Neighbour> StackAround(const Chain& seed) const {
    std::vector<Neighbour> stack = {{0, &seed}};
    for (const Chain& other : chains) {
      if (&other == &seed || std::abs(other.slope - seed.slope) > 0.06 ||
          std::abs(other.pitch - seed.pitch) > 0.08 * seed.pitch) {
        continue;
      }
      const double x = std::clamp((seed.Left() + seed.Right()) / 2, other.Left(), other.Right());
      const double distance = other.At(x) - seed.At(x);
      const double overlap =
          std::min(seed.Right(), other.Right()) - std::max(seed.Left(), other.Left());
      if (overlap > 0 && std::abs(distance) > ClosestLines * seed.pitch &&
          std::abs(distance) < 7 * seed.pitch) {
        stack.push_back({distance, &other});
      }
    }
    std::sort(stack.begin(), stack.end(),
              [](const Neighbour& a, const Neighbour& b) { return a.distance < b.distance; });
    return stack;
  }

  void FindIn(const std::vector<Neighbour>& stack, const Chain& seed, std::size_t lines) {
    for (std::size_t i = 0; i + lines <= stack.size(); ++i) {
      const double step = stack[i + 1].distance - stack[i].distance;
      bool fits = false;
      std::vector<const Chain*> members;
      for (std::size_t line = i; line < i + lines; ++line) {
        fits = fits || stack[line].chain == &seed;
        members.push_back(stack[line].chain);
      }
      for (std::size_t line = i + 1; line < i + lines; ++line) {
        const double distance = stack[line].distance - stack[line - 1].distance;
        fits = fits && distance > ClosestLines * seed.pitch && distance < 3.4 * seed.pitch &&
               std::abs(distance - step) < 0.25 * step;
      }
      const bool known = std::any_of(found.begin(), found.end(), [&members](const Found& other) {
        return other.chains == members;
      });
      if (fits && !known) {
        Add(std::move(members));
      }
    }
  }

  void Add(std::vector<const Chain*> members) {
    int columns = 0;
    double weight = 0;
    for (const Chain* const chain : members) {
      columns = std::max(columns, RowOf(*chain).columns);
      weight += static_cast<double>(chain->marks.size()) * chain->evenness;
    }
    const bool three = members.size() == 3;
    // A few of a line's ends may not have been found, or something beside it been.
    if (columns < (three ? 26 : 32) || columns > 60) {
      return;
    }
    // A TD1 counts as what it is before two of its three lines do.
    constexpr double ofThree = 6;
    weight = weight / static_cast<double>(members.size()) + (three && columns < 36 ? ofThree : 0);
    found.push_back({std::move(members), weight});
  }

  static constexpr double ClosestLines = 1.2;  // in pitches

  const std::vector<Chain>& chains;
  std::vector<Found> found;
};

}  // namespace

std::vector<RowGroup> FindRowGroups(const PageImage& page) {
  const int factor =
      std::max(1, (std::max(page.width, page.height) + LongestSide - 1) / LongestSide);
  const std::vector<Mark> marks = factor > 1 ? FindMarks(Reduced(page, factor)) : FindMarks(page);
  std::vector<std::pair<double, RowGroup>> found;
  for (const bool upright : {true, false}) {
    const std::vector<Chain> chains = FindChains(upright ? marks : Turned(marks));
    for (const Grouping::Found& one : Grouping(chains).Find()) {
      RowGroup group;
      for (const Chain* const chain : one.chains) {
        const TextRow row = RowOf(*chain);
        group.push_back(Enlarged(upright ? row : TurnedBack(row), factor));
      }
      found.emplace_back(one.weight, std::move(group));
    }
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const auto& a, const auto& b) { return a.first > b.first; });
  std::vector<RowGroup> groups;
  groups.reserve(found.size());
  for (auto& [weight, group] : found) {
    groups.push_back(std::move(group));
  }
  return groups;
}

}  // namespace conduit
