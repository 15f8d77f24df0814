#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace conduit {

/// In pixels of the page; x to the right, y down.
struct Point {
  double x;
  double y;
};

/// An upright rectangle of whole pixels.
struct Rectangle {
  int left;
  int top;
  int width;
  int height;

  int Right() const { return left + width; }   ///< the first column beyond it
  int Bottom() const { return top + height; }  ///< the first row beyond it
};

inline bool Overlap(const Rectangle& a, const Rectangle& b) {
  return a.left < b.Right() && b.left < a.Right() && a.top < b.Bottom() && b.top < a.Bottom();
}

inline Rectangle Widened(const Rectangle& area, int margin) {
  return {area.left - margin, area.top - margin, area.width + 2 * margin, area.height + 2 * margin};
}

/// Without what lies to the left of the page or above it.
inline Rectangle WithinPage(const Rectangle& area) {
  const int left = std::max(0, area.left);
  const int top = std::max(0, area.top);
  return {left, top, area.Right() - left, area.Bottom() - top};
}

/// The smallest rectangle around pixels that are added one by one.
class BoundsOfPixels {
 public:
  void Add(int x, int y) {
    left = std::min(left, x);
    right = std::max(right, x);
    top = std::min(top, y);
    bottom = std::max(bottom, y);
  }
  bool IsEmpty() const { return right < left; }
  /// Requires a pixel.
  Rectangle Get() const { return {left, top, right - left + 1, bottom - top + 1}; }

 private:
  int left = std::numeric_limits<int>::max();
  int top = std::numeric_limits<int>::max();
  int right = -1;
  int bottom = -1;
};

/// Axes rotated against those of the page: u along a direction, v across it.
class RotatedAxes {
 public:
  /// @param angle  of u, in radians, clockwise from the row
  RotatedAxes(Point origin, double angle)
      : origin(origin), cosine(std::cos(angle)), sine(std::sin(angle)) {}

  Point ToPage(double u, double v) const {
    return {origin.x + u * cosine - v * sine, origin.y + u * sine + v * cosine};
  }
  /// Returns u as x and v as y.
  Point FromPage(Point point) const {
    const double x = point.x - origin.x;
    const double y = point.y - origin.y;
    return {x * cosine + y * sine, y * cosine - x * sine};
  }

 private:
  Point origin;
  double cosine;
  double sine;
};

/// A rectangle at any angle.
struct RotatedRectangle {
  Point centre;
  double width;   ///< along the angle
  double height;  ///< across it
  double angle;   ///< in radians, clockwise from the row

  RotatedAxes Axes() const { return {centre, angle}; }
  double Area() const { return width * height; }

  /// The upright rectangle around it, to the nearest pixel.
  Rectangle Bounds() const {
    const double cosine = std::abs(std::cos(angle));
    const double sine = std::abs(std::sin(angle));
    const double wide = width * cosine + height * sine;
    const double high = width * sine + height * cosine;
    const auto whole = [](double pixels) { return static_cast<int>(std::lround(pixels)); };
    return {whole(centre.x - wide / 2), whole(centre.y - high / 2), whole(wide), whole(high)};
  }
};

inline RotatedRectangle Upright(const Rectangle& area) {
  return {{area.left + area.width / 2.0, area.top + area.height / 2.0},
          double(area.width),
          double(area.height),
          0};
}

}  // namespace conduit
