#pragma once

#include "virtual_reader/images/PageImage.h"
#include "virtual_reader/barcodes/PageAreas.h"

namespace conduit {

/// A part of a page, turned level and dark on light.
class PageCut {
 public:
  PageCut(const PageImage& page, const TurnedArea& area, bool inverted);

  const PageImage& Image() const { return image; }

  /// Where on the page an area of this image lies.
  PageArea OnPage(const PageArea& area) const;

 private:
  struct Place {
    double x;
    double y;
  };
  Place OnPage(double x, double y) const;

  PageImage image;
  Place middle;  ///< on the page
  double across;
  double down;
};

}  // namespace conduit
