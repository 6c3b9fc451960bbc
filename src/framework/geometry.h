// CPoint, CSize, CRect: 32-bit signed coordinates.
//
// CRect keeps some deliberate oddities that the drawing clips rely on:
// NormalizeRect takes absolute values of top and bottom first (logical y is
// negative below the origin), IntersectRect counts an intersection lying at
// zero on an axis as empty, and IsRectEmpty tests sums, not differences.
#pragma once

#include <cstdint>

struct CPoint {
  int32_t x = 0;
  int32_t y = 0;
  CPoint() = default;
  CPoint(int32_t x_, int32_t y_) : x(x_), y(y_) {}
  bool operator==(const CPoint&) const = default;
  CPoint operator+(const CPoint& o) const { return {x + o.x, y + o.y}; }
  CPoint operator-(const CPoint& o) const { return {x - o.x, y - o.y}; }
  void Offset(int32_t dx, int32_t dy) { x += dx; y += dy; }
};

struct CSize {
  int32_t cx = 0;
  int32_t cy = 0;
  CSize() = default;
  CSize(int32_t cx_, int32_t cy_) : cx(cx_), cy(cy_) {}
  bool operator==(const CSize&) const = default;
  CSize operator+(const CSize& o) const { return {cx + o.cx, cy + o.cy}; }
  CSize operator-(const CSize& o) const { return {cx - o.cx, cy - o.cy}; }
};

struct CRect {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;
  int32_t bottom = 0;

  CRect() = default;
  CRect(int32_t l, int32_t t, int32_t r, int32_t b) : left(l), top(t), right(r), bottom(b) {}
  bool operator==(const CRect&) const = default;

  int32_t Width() const { return right - left; }
  int32_t Height() const { return bottom - top; }
  CPoint TopLeft() const { return {left, top}; }
  CPoint BottomRight() const { return {right, bottom}; }
  void SetRect(int32_t l, int32_t t, int32_t r, int32_t b) { left = l; top = t; right = r; bottom = b; }
  void SetRectEmpty() { SetRect(0, 0, 0, 0); }
  void OffsetRect(int32_t dx, int32_t dy) { left += dx; right += dx; top += dy; bottom += dy; }
  void InflateRect(int32_t x, int32_t y) { InflateRect(x, y, x, y); }
  void InflateRect(int32_t l, int32_t t, int32_t r, int32_t b) {
    left -= l;
    top -= t;
    right += r;
    bottom += b;
  }
  bool PtInRect(const CPoint& p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }

  void NormalizeRect();
  static void FindIntersection(CPoint& result, int32_t a1, int32_t a2, int32_t b1, int32_t b2);
  int IntersectRect(const CRect& r1, const CRect& r2);
  CRect operator&(const CRect& other) const;
  bool IsRectEmpty() const;
};
