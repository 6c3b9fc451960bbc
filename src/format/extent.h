// TFmtExtent: the measure of a node in logical units (half points), height
// above the baseline, depth below it, and width.
#pragma once

#include <cstdint>

#include "framework/geometry.h"
#include "framework/objects.h"

class TFmtExtent : public CObject {
 public:
  TFmtExtent() = default;
  TFmtExtent(int32_t height, int32_t depth, int32_t width) : m_nHeight(height), m_nDepth(depth), m_nWidth(width) {}
  TFmtExtent(const TFmtExtent&) = default;
  TFmtExtent& operator=(const TFmtExtent&) = default;

  void Reset(int32_t height, int32_t depth, int32_t width) {
    m_nHeight = height;
    m_nDepth = depth;
    m_nWidth = width;
  }
  void Reset(const TFmtExtent* other) {
    if (other) *this = *other;
  }

  void MaxHeight(int32_t h) {
    if (h > m_nHeight) m_nHeight = h;
  }
  void MaxDepth(int32_t d) {
    if (d > m_nDepth) m_nDepth = d;
  }
  void MaxWidth(int32_t w) {
    if (w > m_nWidth) m_nWidth = w;
  }

  // Zero marks an extent as empty for the layout code. Summed in 64 bits so a
  // huge extent from a bad document cannot overflow; the answer saturates.
  int32_t Sum() const;

  // Left and top edges belong to the box; right and bottom edges do not.
  // Logical y grows upward, so the top is origin.y + height.
  bool IsPointInRectangle(const CPoint& origin, const CPoint& p) const;

  int32_t m_nHeight = 0;
  int32_t m_nDepth = 0;
  int32_t m_nWidth = 0;
};
