// KStyle: the TeX math styles, smallest first.
#pragma once

enum KStyle : int {
  k_StyleScriptScript = 1,
  k_StyleScript = 2,
  k_StyleText = 3,
  k_StyleDisplay = 4,
};
