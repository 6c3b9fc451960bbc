// The argument readers that produce dimensions: a measure, braced or not,
// and an optional one in brackets.
#pragma once

#include "tex/token_source.h"

class TFmtUnitNode;

// Measures and glue values are read in math mode: a "-" is a sign, never a
// dash ligature, and a word holds letters only, so "2pt" and "plus1fil"
// split where TeX splits them. The old mode comes back on every path out,
// an \input that throws included.
class TMeasureReadingScope {
 public:
  explicit TMeasureReadingScope(TTexTokenSource& source) : m_Source(source), m_nOld(source.Get_MathMode()) {
    source.Set_MathMode(1);
  }
  TMeasureReadingScope(const TMeasureReadingScope&) = delete;
  TMeasureReadingScope& operator=(const TMeasureReadingScope&) = delete;
  ~TMeasureReadingScope() { m_Source.Set_MathMode(m_nOld); }

 private:
  TTexTokenSource& m_Source;
  int m_nOld;
};

// A TFmtUnitNode (owned by the caller, never null): "{measure}" or a bare
// measure. A missing "}" is traced and the token in its place is dropped.
TFmtUnitNode* NextTexMeasureArg(TTexTokenSource& source);
// "[measure]" as a TFmtUnitNode owned by the caller, or null with no "[".
TFmtUnitNode* NextTexOptionalMeasureArg(TTexTokenSource& source);
