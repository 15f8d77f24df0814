#include "virtual_reader/pixels/Components.h"

#include <algorithm>

namespace conduit {

void ComponentLabelling::AddRow(const std::uint8_t* set, int width) {
  const std::size_t begin = runs.size();
  std::size_t above = aboveBegin;
  for (int x = 0; x < width;) {
    if (set[x] == 0) {
      ++x;
      continue;
    }
    int end = x;
    while (end < width && set[end] != 0) {
      ++end;
    }
    const std::size_t index = runs.size();
    runs.push_back({rows, x, end, index});
    while (above < begin && runs[above].to < x) {
      ++above;
    }
    for (std::size_t other = above; other < begin && runs[other].from <= end; ++other) {
      Join(other, index);
    }
    x = end;
  }
  aboveBegin = begin;
  ++rows;
}

std::vector<Component> ComponentLabelling::Take() {
  std::vector<BoundsOfPixels> bounds(runs.size());
  std::vector<int> pixels(runs.size());
  for (std::size_t i = 0; i < runs.size(); ++i) {
    const Run& run = runs[i];
    const std::size_t root = RootOf(i);
    bounds[root].Add(run.from, run.y);
    bounds[root].Add(run.to - 1, run.y);
    pixels[root] += run.to - run.from;
  }
  std::vector<Component> components;
  for (std::size_t i = 0; i < runs.size(); ++i) {
    if (pixels[i] > 0) {
      components.push_back({bounds[i].Get(), pixels[i]});
    }
  }
  return components;
}

std::size_t ComponentLabelling::RootOf(std::size_t run) {
  while (runs[run].parent != run) {
    runs[run].parent = runs[runs[run].parent].parent;
    run = runs[run].parent;
  }
  return run;
}

void ComponentLabelling::Join(std::size_t a, std::size_t b) {
  const std::size_t rootOfA = RootOf(a);
  const std::size_t rootOfB = RootOf(b);
  runs[std::max(rootOfA, rootOfB)].parent = std::min(rootOfA, rootOfB);
}

}  // namespace conduit
