#pragma once

#include <vector>

#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// A dark component of about a character's size: a character, a piece of one, a speck.
struct GlyphCandidate {
  double x;  ///< of its centre
  double y;
  double width;
  double height;
};

/// Binarises a page and returns the components of the size that an MRZ's characters have at
/// some 150 dpi. Returns none where there are more than print makes: noise.
std::vector<GlyphCandidate> FindGlyphCandidates(const PageImage& page);

}  // namespace conduit
