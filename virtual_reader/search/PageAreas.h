#pragma once

#include <vector>

#include "virtual_reader/images/PageImage.h"

namespace conduit {

struct PageArea {
  int left;
  int top;
  int width;
  int height;
};

bool Overlap(const PageArea& a, const PageArea& b);

/// Where something dark stands by itself, with unprinted page around it: the
/// shape of a symbol. Leaves out what is too flat or too small for one.
std::vector<PageArea> PrintedAreas(const PageImage& image);

}  // namespace conduit
