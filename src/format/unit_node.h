// TFmtUnitNode: a dimension kept as an exact fraction with its unit. The
// source form is kept so that printing gives it back, and the value becomes
// logical units only on demand: em, ex and \hsize change with the font and
// the window.
#pragma once

#include <cstdint>

#include "format/node.h"

class TTexTokenSource;

enum KUnitType : int {
  k_UnitNone = 0,  // already logical units
  k_UnitBp = 1,
  k_UnitCc = 2,
  k_UnitCm = 3,
  k_UnitDd = 4,
  k_UnitEm = 5,
  k_UnitEx = 6,
  k_UnitHsize = 7,
  k_UnitIn = 8,
  k_UnitMm = 9,
  k_UnitPc = 10,
  k_UnitPt = 11,
  k_UnitSp = 12,
  k_UnitFil = 13,
  k_UnitFill = 14,
  k_UnitFilll = 15,
  k_UnitMu = 16,
};

class TFmtUnitNode : public TFmtNode {
 public:
  TFmtUnitNode(long numerator, long denominator, KUnitType type);
  TFmtUnitNode(const TFmtUnitNode& other);
  TFmtUnitNode& operator=(const TFmtUnitNode& other);

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtUnitNode* CopyDerived() const { return new TFmtUnitNode(*this); }
  void Description(CString& out) override;
  int IsEmpty() const override { return 0; }
  TFmtUnitNode* IsUnitNode() const override { return const_cast<TFmtUnitNode*>(this); }
  // Reads [-]digits[.digits] [true] [unit]; see unit_node.cpp.
  TFmtNode* ParseTex(TTexTokenSource& source) override;
  void PrintTex(CString& out, int& column) const override;

  // A fraction too wide for 32 bits is halved, numerator and denominator
  // together, until it fits: the value stays close and nothing overflows.
  void SetValue(long numerator, long denominator, KUnitType type);
  int OfForm(long numerator, long denominator, KUnitType type) const;
  void Negate();
  void GetValue(long& numerator, long& denominator, TFmtContext& context, KUnitType wanted) const;
  // The one conversion to an integer: logical units, truncated toward zero
  // (0 for a zero denominator, clamped to the 32-bit range).
  long GetInternalValue(TFmtContext& context) const;
  // A new node (the caller owns it) in unit 0: this + sign x other.
  TFmtUnitNode* Add(const TFmtUnitNode* other, long sign, TFmtContext& context) const;

  long Get_Numerator() const { return m_nNumerator; }
  long Get_Denominator() const { return m_nDenominator; }
  KUnitType Get_UnitType() const { return m_nUnitType; }
  int Get_True() const { return m_bTrue; }

  static void ToCommon(long& n, long& d, TFmtContext& context, KUnitType type);
  static void FromCommon(long& n, long& d, TFmtContext& context, KUnitType type);
  // Not Euclid's algorithm, and kept so on purpose: stored fractions and
  // printed values depend on it (Gcd(35, 10) is 3, so 3.5pt is 11/3 pt).
  static long Gcd(long a, long b);
  // Without regard to case; an unknown name is `in`.
  static KUnitType GetUnitTypeFromName(const char* name);
  // Floating conversions for the option dialogs; here a pica is 12 points.
  static double ConvertFixed(double value, const char* from, const char* to);
  static long ConvertFixedToInternal(double value, const char* unit);
  // The printed name of a unit ("pt" for unit 0).
  static const char* UnitName(KUnitType type);

  // Interns the names and puts _MEASUREMENTNAME on each unit name. Runs
  // again when the global pool has been made anew.
  static void Init();
  // The unit that _MEASUREMENTNAME gives the interned word, or -1.
  static int LookupMeasurementName(const char* canonicalWord);

  static inline const char* fg_pfill = nullptr;
  static inline const char* fg_phsize = nullptr;
  static inline const char* fg_ptrue = nullptr;
  static inline const char* fg_pMEASUREMENTNAME = nullptr;
  static inline int fg_bInitialized = 0;

 private:
  // ---- fields, in order ----
  int m_bTrue = 0;  // "true" was given; kept, not otherwise used
  KUnitType m_nUnitType = k_UnitNone;
  int32_t m_nDenominator = 1;
  int32_t m_nNumerator = 0;

  static inline int fg_nInitGeneration = 0;
};
