#include "format/extent.h"

#include <algorithm>
#include <limits>

int32_t TFmtExtent::Sum() const {
  const int64_t sum = int64_t{m_nHeight} + m_nDepth + m_nWidth;
  return static_cast<int32_t>(std::clamp<int64_t>(sum, std::numeric_limits<int32_t>::min(),
                                                  std::numeric_limits<int32_t>::max()));
}

bool TFmtExtent::IsPointInRectangle(const CPoint& origin, const CPoint& p) const {
  // 64-bit edges: positions near the 32-bit limits must not wrap into a hit.
  return int64_t{origin.x} <= p.x && int64_t{p.x} < int64_t{origin.x} + m_nWidth &&
         int64_t{p.y} > int64_t{origin.y} - m_nDepth && int64_t{p.y} <= int64_t{origin.y} + m_nHeight;
}
