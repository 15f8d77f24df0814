#pragma once

#include <vector>

#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// Something dark that hangs together: a character, a piece of one, a speck.
struct Mark {
  double x;  ///< of its middle
  double y;
  double width;
  double height;
};

/// The marks of about a character's size, as a zone has them on a page of some 150
/// dots to the inch. Nothing where there are more than print makes: noise.
std::vector<Mark> FindMarks(const PageImage& page);

}  // namespace conduit
