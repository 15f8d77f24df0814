#include "virtual_reader/session/NearestName.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace conduit {
namespace {

constexpr std::size_t LongestListShown = 12;

/// The number of letters to insert, remove or replace (Levenshtein).
std::size_t EditDistance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < from.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < to.size(); ++j) {
      const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string UnknownName(std::string_view kind, std::string_view name,
                        const std::vector<std::string>& known) {
  // A name of any length may stand in the file; the message stays readable.
  constexpr std::size_t shown = 60;
  const std::string_view start = name.substr(0, shown);
  std::string text = "there is no " + std::string(kind) + " \"" + std::string(start) +
                     (name.size() > shown ? "...\"" : "\"");
  if (known.size() > LongestListShown) {
    const auto nearest = std::min_element(known.begin(), known.end(),
                                          [start](const std::string& a, const std::string& b) {
                                            return EditDistance(start, a) < EditDistance(start, b);
                                          });
    return text + "; the nearest is \"" + *nearest + '"';
  }
  text += "; known:";
  for (const std::string& other : known) {
    text += (&other == &known.front() ? " \"" : ", \"") + other + '"';
  }
  return text;
}

}  // namespace conduit
