#include "framework/geometry.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

void CRect::NormalizeRect() {
  // Absolute values first: a rectangle in logical units lies below the origin
  // with negative y, and the clip tests want it in device orientation.
  top = std::abs(top);
  bottom = std::abs(bottom);
  if (bottom < top) std::swap(top, bottom);
  if (right < left) std::swap(left, right);
}

void CRect::FindIntersection(CPoint& result, int32_t a1, int32_t a2, int32_t b1, int32_t b2) {
  if (b1 < a1) {  // let a be the interval that starts first
    std::swap(a1, b1);
    std::swap(a2, b2);
  }
  if (b1 > a2) {
    result = CPoint(0, 0);
    return;
  }
  result = CPoint(b1, std::min(a2, b2));
}

int CRect::IntersectRect(const CRect& r1, const CRect& r2) {
  CPoint x, y;
  FindIntersection(x, r1.left, r1.right, r2.left, r2.right);
  FindIntersection(y, r1.top, r1.bottom, r2.top, r2.bottom);
  left = x.x;
  right = x.y;
  top = y.x;
  bottom = y.y;
  // An overlap lying at zero on one axis reads as empty; the clips rely on it.
  return (left != 0 || right != 0) && (top != 0 || bottom != 0);
}

CRect CRect::operator&(const CRect& other) const {
  CRect result;
  result.IntersectRect(*this, other);
  return result;
}

bool CRect::IsRectEmpty() const {
  // Sums, not differences: callers pass rectangles anchored at the origin.
  return int64_t{left} + right < 1 || int64_t{top} + bottom < 1;
}
