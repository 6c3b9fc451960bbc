#include "format/unit_node.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <strings.h>

#include "device/font_family.h"
#include "format/context.h"
#include "symbols/global_strings.h"
#include "symbols/string_pool.h"
#include "tex/measure_args.h"
#include "tex/token_source.h"

namespace {

constexpr long U = TFmtContext::fg_nUnitsPerPoint;
constexpr long fg_nInt32Max = std::numeric_limits<int32_t>::max();
constexpr long fg_nInt32Min = std::numeric_limits<int32_t>::min();

// Products of the conversions are 64-bit and saturate: a fraction so large
// has no sensible size anyway, and a trap or wrap would be worse.
long Mul(long a, long b) {
  long result;
  if (!__builtin_mul_overflow(a, b, &result)) return result;
  return ((a < 0) != (b < 0)) ? std::numeric_limits<long>::min() : std::numeric_limits<long>::max();
}

long Add64(long a, long b) {
  long result;
  if (!__builtin_add_overflow(a, b, &result)) return result;
  return a < 0 ? std::numeric_limits<long>::min() : std::numeric_limits<long>::max();
}

// Truncating division that neither divides by zero nor overflows.
long Div(long n, long d) {
  if (d == 0) return 0;
  if (d == -1) return n == std::numeric_limits<long>::min() ? std::numeric_limits<long>::max() : -n;
  return n / d;
}

// The width of "M" and height of "x" in the current extended font; 0 while
// no font is selected.
long EmWidth(TFmtContext& context) {
  TExtendedFont* font = TExtendedFont::fg_pCurrent;
  return font ? font->CharacterWidth('M', context) : 0;
}
long ExHeight(TFmtContext& context) {
  TExtendedFont* font = TExtendedFont::fg_pCurrent;
  return font ? font->CharacterHeight('x', context) : 0;
}
long HsizeWidth(const TFmtContext& context) {
  return long{context.m_nRightMargin} - long{context.m_nLeftMargin};
}

bool IsConvertible(KUnitType type) {
  return type != k_UnitNone && type != k_UnitFil && type != k_UnitFill && type != k_UnitFilll;
}

struct TUnitName {
  const char* name;
  KUnitType type;
};
constexpr TUnitName fg_UnitNames[] = {
    {"bp", k_UnitBp},    {"cc", k_UnitCc},     {"cm", k_UnitCm},       {"dd", k_UnitDd},
    {"em", k_UnitEm},    {"ex", k_UnitEx},     {"in", k_UnitIn},       {"mm", k_UnitMm},
    {"pc", k_UnitPc},    {"pt", k_UnitPt},     {"sp", k_UnitSp},       {"fil", k_UnitFil},
    {"fill", k_UnitFill}, {"filll", k_UnitFilll}, {"mu", k_UnitMu},
};

}  // namespace

void TFmtUnitNode::Init() {
  TStringPool::InitializeGlobal();
  if (fg_bInitialized && fg_nInitGeneration == TStringPool::Get_GlobalGeneration()) return;
  fg_bInitialized = 1;
  fg_nInitGeneration = TStringPool::Get_GlobalGeneration();
  TStringPool* pool = TStringPool::g_pGlobal;
  fg_pfill = pool->Put("fill");
  fg_phsize = pool->Put("hsize");
  fg_ptrue = pool->Put("true");
  fg_pMEASUREMENTNAME = pool->Put("_MEASUREMENTNAME");
  for (const TUnitName& unit : fg_UnitNames)
    pool->Put(unit.name, fg_pMEASUREMENTNAME, new TIntegerProperty(unit.type));
}

int TFmtUnitNode::LookupMeasurementName(const char* canonicalWord) {
  Init();
  if (!canonicalWord) return -1;
  auto* property = TStringPool::g_pGlobal->GetTyped<TIntegerProperty>(canonicalWord, fg_pMEASUREMENTNAME);
  return property ? property->Get_Value() : -1;
}

TFmtUnitNode::TFmtUnitNode(long numerator, long denominator, KUnitType type) {
  Init();
  SetValue(numerator, denominator, type);
}

TFmtUnitNode::TFmtUnitNode(const TFmtUnitNode& other)
    : TFmtNode(other),
      m_bTrue(other.m_bTrue),
      m_nUnitType(other.m_nUnitType),
      m_nDenominator(other.m_nDenominator),
      m_nNumerator(other.m_nNumerator) {}

TFmtUnitNode& TFmtUnitNode::operator=(const TFmtUnitNode& other) {
  if (this != &other) {
    TFmtNode::operator=(other);
    m_bTrue = other.m_bTrue;
    m_nUnitType = other.m_nUnitType;
    m_nDenominator = other.m_nDenominator;
    m_nNumerator = other.m_nNumerator;
  }
  return *this;
}

void TFmtUnitNode::Description(CString& out) {
  out.Empty();
  out = "measurement unit";
}

void TFmtUnitNode::SetValue(long numerator, long denominator, KUnitType type) {
  if (denominator == 0) denominator = 1;  // a fraction over 0 has no value to keep
  while (numerator > fg_nInt32Max || numerator < fg_nInt32Min || denominator > fg_nInt32Max ||
         denominator < fg_nInt32Min) {
    numerator /= 2;
    denominator /= 2;
    if (denominator == 0) denominator = 1;
  }
  m_nNumerator = static_cast<int32_t>(numerator);
  m_nDenominator = static_cast<int32_t>(denominator);
  m_nUnitType = type;
}

int TFmtUnitNode::OfForm(long numerator, long denominator, KUnitType type) const {
  return m_nNumerator == numerator && m_nDenominator == denominator && m_nUnitType == type;
}

void TFmtUnitNode::Negate() {
  // -INT32_MIN does not fit: the nearest value does.
  m_nNumerator = m_nNumerator == std::numeric_limits<int32_t>::min() ? std::numeric_limits<int32_t>::max()
                                                                     : -m_nNumerator;
}

long TFmtUnitNode::Gcd(long a, long b) {
  if (a == 0 || b == 0) return 1;
  // Magnitudes as unsigned, so that the most negative long has one.
  unsigned long x = a < 0 ? 0UL - static_cast<unsigned long>(a) : static_cast<unsigned long>(a);
  unsigned long y = b < 0 ? 0UL - static_cast<unsigned long>(b) : static_cast<unsigned long>(b);
  if (x < y) std::swap(x, y);
  unsigned long r = x % y;
  while (r != 0) {
    x = x / y;  // the quotient, not the old divisor: this loop is not Euclid's
    y = r;
    r = x % y;
  }
  return y > static_cast<unsigned long>(std::numeric_limits<long>::max()) ? 1 : static_cast<long>(y);
}

void TFmtUnitNode::ToCommon(long& n, long& d, TFmtContext& context, KUnitType type) {
  if (n == 0 || type == k_UnitNone) return;
  switch (type) {
    case k_UnitCc: n = Mul(n, 14856 * U); d = Mul(d, 1157); break;
    case k_UnitCm: n = Mul(n, 7200 * U); d = Mul(d, 254); break;
    case k_UnitDd: n = Mul(n, 1238 * U); d = Mul(d, 1157); break;
    case k_UnitEm: n = Mul(n, EmWidth(context)); break;
    case k_UnitEx: n = Mul(n, ExHeight(context)); break;
    case k_UnitHsize: n = Mul(n, HsizeWidth(context)); break;
    case k_UnitIn: n = Mul(n, 72 * U); break;
    case k_UnitMm: n = Mul(n, 720 * U); d = Mul(d, 254); break;
    case k_UnitMu: n = Mul(n, Mul(18, EmWidth(context))); break;  // 18 ems here, not 1/18
    case k_UnitPc: n = Mul(n, 6 * U); break;                      // 6 points on this path
    case k_UnitBp:
    case k_UnitPt: n = Mul(n, U); break;
    case k_UnitSp: n = Mul(n, U); d = Mul(d, 65536); break;
    default: break;  // the fil levels are not lengths
  }
}

void TFmtUnitNode::FromCommon(long& n, long& d, TFmtContext& context, KUnitType type) {
  if (n == 0) {
    d = 1;
    return;
  }
  if (type == k_UnitNone) return;
  switch (type) {
    case k_UnitCc: n = Mul(n, 1157); d = Mul(d, 14856 * U); break;
    case k_UnitCm: n = Mul(n, 254); d = Mul(d, 7200 * U); break;
    case k_UnitDd: n = Mul(n, 1157); d = Mul(d, 1238 * U); break;
    case k_UnitEm: d = Mul(d, EmWidth(context)); break;
    case k_UnitEx: d = Mul(d, ExHeight(context)); break;
    case k_UnitHsize: d = Mul(d, HsizeWidth(context)); break;
    case k_UnitIn: d = Mul(d, 72 * U); break;
    case k_UnitMm: n = Mul(n, 254); d = Mul(d, 720 * U); break;
    case k_UnitMu: d = Mul(d, Mul(18, EmWidth(context))); break;
    case k_UnitPc: d = Mul(d, 6 * U); break;
    case k_UnitBp:
    case k_UnitPt: d = Mul(d, U); break;
    case k_UnitSp: n = Mul(n, 65536); d = Mul(d, U); break;
    default: break;
  }
  if (IsConvertible(type)) {
    const long g = Gcd(n, d);
    if (g != 1) {
      n /= g;
      d /= g;
    }
  }
}

void TFmtUnitNode::GetValue(long& numerator, long& denominator, TFmtContext& context, KUnitType wanted) const {
  numerator = m_nNumerator;
  denominator = m_nDenominator;
  if (wanted == m_nUnitType) return;
  ToCommon(numerator, denominator, context, m_nUnitType);
  FromCommon(numerator, denominator, context, wanted);
}

long TFmtUnitNode::GetInternalValue(TFmtContext& context) const {
  long n, d;
  GetValue(n, d, context, k_UnitNone);
  const long value = Div(n, d);
  return value > fg_nInt32Max ? fg_nInt32Max : value < fg_nInt32Min ? fg_nInt32Min : value;
}

TFmtUnitNode* TFmtUnitNode::Add(const TFmtUnitNode* other, long sign, TFmtContext& context) const {
  long n1, d1, n2 = 0, d2 = 1;
  GetValue(n1, d1, context, k_UnitNone);
  if (other) other->GetValue(n2, d2, context, k_UnitNone);
  if (d1 == 0) d1 = 1;
  if (d2 == 0) d2 = 1;
  const long g = Gcd(d1, d2);
  const long a = d1 / g, b = d2 / g;
  const long numerator = Add64(Mul(n1, b), Mul(Mul(sign, n2), a));
  return new TFmtUnitNode(numerator, Mul(a, d2), k_UnitNone);
}

KUnitType TFmtUnitNode::GetUnitTypeFromName(const char* name) {
  if (!name) return k_UnitIn;
  if (strcasecmp(name, "\\hsize") == 0 || strcasecmp(name, "hsize") == 0) return k_UnitHsize;
  for (const TUnitName& unit : fg_UnitNames)
    if (strcasecmp(name, unit.name) == 0) return unit.type;
  return k_UnitIn;
}

namespace {
double ToPoints(double value, KUnitType type) {
  switch (type) {
    case k_UnitCm: return value / 2.54 * 72;
    case k_UnitIn: return value * 72;
    case k_UnitMm: return value / 25.4 * 72;
    case k_UnitPc: return value * 12;  // 12 points here, unlike the fraction path
    default: return value;
  }
}
double FromPoints(double points, KUnitType type) {
  switch (type) {
    case k_UnitCm: return points / 72 * 2.54;
    case k_UnitIn: return points / 72;
    case k_UnitMm: return points / 72 * 25.4;
    case k_UnitPc: return points / 12;
    default: return points;
  }
}
}  // namespace

double TFmtUnitNode::ConvertFixed(double value, const char* from, const char* to) {
  const KUnitType fromType = GetUnitTypeFromName(from), toType = GetUnitTypeFromName(to);
  if (value == 0 || fromType == toType) return value;
  return FromPoints(ToPoints(value, fromType), toType);
}

long TFmtUnitNode::ConvertFixedToInternal(double value, const char* unit) {
  if (value == 0) return 0;
  const double internal = std::floor(0.5 + U * ToPoints(value, GetUnitTypeFromName(unit)));
  // NaN and values past the range of long would make the cast undefined.
  if (!(internal > -9.0e18 && internal < 9.0e18)) return 0;
  return static_cast<long>(internal);
}

const char* TFmtUnitNode::UnitName(KUnitType type) {
  switch (type) {
    case k_UnitNone: return "pt";
    case k_UnitHsize: return "\\hsize";
    default: break;
  }
  for (const TUnitName& unit : fg_UnitNames)
    if (unit.type == type) return unit.name;
  return "pt";
}

void TFmtUnitNode::PrintTex(CString& out, int& column) const {
  double value = m_nDenominator != 0 ? static_cast<double>(m_nNumerator) / m_nDenominator : 0.0;
  if (m_nUnitType == k_UnitNone) value /= U;
  char text[64];
  if (std::floor(value) == value)
    std::snprintf(text, sizeof text, "%ld", static_cast<long>(value));
  else
    std::snprintf(text, sizeof text, "%f", value);
  out += text;
  column += static_cast<int>(std::strlen(text));
  out += UnitName(m_nUnitType);
  // Every name counts two columns, the fil levels one more per "l"; \hsize
  // counts two like the rest.
  column += 2;
  if (m_nUnitType == k_UnitFil) column += 1;
  if (m_nUnitType == k_UnitFill) column += 2;
  if (m_nUnitType == k_UnitFilll) column += 3;
}

TFmtNode* TFmtUnitNode::ParseTex(TTexTokenSource& source) {
  TMeasureReadingScope raw(source);
  long numerator = 0, denominator = 1;
  int negative = 0;
  KUnitType unit = m_nUnitType;

  std::unique_ptr<TTexToken> token(source.NextToken(1, 1));
  if (token && token->IsCharacter('-')) {
    negative = 1;
    token.reset(source.NextToken(1, 1));
  }
  bool haveNumber = false;
  if (!token) {
    // the end: nothing more to read
  } else if (token->IsCharacter() && token->GetCharacter() >= '0' && token->GetCharacter() <= '9') {
    numerator = token->GetCharacter() - '0';
    haveNumber = true;
  } else if (const char* text = token->GetSequence();
             text && ((text[0] >= '0' && text[0] <= '9') || text[0] == '.')) {
    bool afterPoint = false;
    for (const char* p = text; *p; ++p) {
      if (*p == '.') {  // a second point changes nothing: "3.1.4" is 3.14
        afterPoint = true;
        continue;
      }
      if (*p < '0' || *p > '9') break;
      // A digit that would take either part past 32 bits ends the number.
      const long next = numerator * 10 + (*p - '0');
      if (next > fg_nInt32Max || (afterPoint && denominator * 10 > fg_nInt32Max)) break;
      numerator = next;
      if (afterPoint) denominator *= 10;
    }
    haveNumber = true;
  } else if (token->IsControlSequence(fg_pfill)) {
    numerator = 1;
    unit = k_UnitFill;
  } else if (token->IsControlSequence(fg_phsize)) {
    numerator = 1;
    unit = k_UnitHsize;
  } else {
    source.PutBack(token.release());  // not a measure: not ours
  }

  if (haveNumber) {
    token.reset(source.NextToken(1, 1));
    if (token && token->IsSequence(fg_ptrue)) {
      m_bTrue = 1;
      token.reset(source.NextToken(1, 1));
    }
    if (!token) {
    } else if (token->GetSequence()) {
      const int found = LookupMeasurementName(token->GetSequence());
      if (found >= 0) {
        unit = static_cast<KUnitType>(found);
      } else if (token->IsSequence(TGlobalString::g_pplus) || token->IsSequence(TGlobalString::g_pminus)) {
        source.PutBack(token.release());  // the clauses of a glue value follow a bare number
      }
      // Any other word is read and leaves the unit as it was (0 from the
      // readers): the number then counts in logical units.
    } else if (token->IsControlSequence(fg_pfill)) {
      unit = k_UnitFill;
    } else if (token->IsControlSequence(fg_phsize)) {
      unit = k_UnitHsize;
    } else {
      source.PutBack(token.release());
    }
  }

  if (numerator != 0) {
    const long g = Gcd(numerator, denominator);
    if (g != 1) {
      numerator /= g;
      denominator /= g;
    }
  }
  if (negative) numerator = -numerator;
  SetValue(numerator, denominator, unit);
  source.SetState(TTexTokenSource::kSkipBlanks);
  return this;
}
