// TFmtPrintParameters: page set-up for printing, which this viewer never does;
// the values are kept so that the paged layout has its numbers.
#pragma once

#include "framework/cstring.h"
#include "framework/objects.h"

class TFmtPrintParameters : public CObject {
 public:
  // Nothing is stored for printing on this display.
  void ReadRegistryValues() {}
  void SaveRegistryValues() {}

  CString m_Units = "in";
  double m_fMarginLeft = 0.75;
  double m_fMarginRight = 0.75;
  double m_fMarginTop = 0.75;
  double m_fMarginBottom = 0.75;
  double m_fPageHeight = 11.0;
  double m_fPageWidth = 8.5;
  int m_nOption1 = 0;
  int m_nOption2 = 0;
  int m_nOption3 = 1;
  int m_nOption4 = 1;
  int m_nOption5 = 0;
};
