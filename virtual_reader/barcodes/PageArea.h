#pragma once

namespace conduit {

/// In pixels of the page.
struct PageArea {
  int left;
  int top;
  int width;
  int height;
};

inline bool Overlap(const PageArea& a, const PageArea& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
         b.top < a.top + a.height;
}

}  // namespace conduit
