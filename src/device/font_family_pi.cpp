#include "device/font_family_pi.h"

const int TFontFamily_PI::g_SizeNumerator[fg_nSizeRatios] = {7, 7, 85, 8, 8, 1, 9, 5, 3, 2, 3, 1};
const int TFontFamily_PI::g_SizeDenominator[fg_nSizeRatios] = {10, 10, 100, 10, 10, 1, 8, 4, 2, 1, 1, 1};

namespace {
double g_SizeRatio[TFontFamily_PI::fg_nSizeRatios];
bool g_bSizeRatiosComputed = false;

int ClampSize(int size) {
  // A size outside the table (bad profile or document value) counts as normal.
  return size >= 0 && size < TFontFamily_PI::fg_nSizeRatios ? size : TFontFamily_PI::k_NormalSize;
}
}  // namespace

int TFontFamily_PI::GetSizeRelativeToBase(int size) {
  const int base = fg_StyleBaseFontSize;
  if (base == k_NormalSize) return size;
  if (size == k_NormalSize) return base;
  if (!g_bSizeRatiosComputed) {
    for (int i = 0; i < fg_nSizeRatios; ++i) g_SizeRatio[i] = double(g_SizeNumerator[i]) / g_SizeDenominator[i];
    g_bSizeRatiosComputed = true;
  }
  const double r = g_SizeRatio[ClampSize(size)] * g_SizeRatio[ClampSize(base)] / g_SizeRatio[k_NormalSize];
  if (!(r > g_SizeRatio[k_Tiny])) return k_Tiny;
  // Searched downward from 9: the table is not monotonic (2 is above 3 and 4),
  // so the order decides, and \Huge (10) is never an answer.
  for (int i = k_Huge; i >= 0; --i)
    if (g_SizeRatio[i] <= r) return i;
  return k_Tiny;
}

int TFontFamily_PI::SetNextSmallerCurrentAndBaseFontSizes() {
  const int previous = fg_CurrentFontSize;
  if (fg_CurrentFontSize != 0) {
    fg_CurrentFontSize = previous - 1;
    fg_StyleBaseFontSize = previous - 1;
  }
  return previous;
}
