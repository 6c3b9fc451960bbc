#include "framework/color_ref.h"

#include <strings.h>

namespace {
// 0..255 to X's 16-bit scale: 255 becomes 0xffff.
uint16_t Widen(unsigned short component) {
  unsigned value = component > 255 ? 255 : component;
  return static_cast<uint16_t>(value * 257);
}
}  // namespace

CColorRef::CColorRef(unsigned short red, unsigned short green, unsigned short blue, const char* name)
    : m_Name(name) {
  m_Asked.red = Widen(red);
  m_Asked.green = Widen(green);
  m_Asked.blue = Widen(blue);
  m_Asked.flags = DoRed | DoGreen | DoBlue;
  m_Placed = m_Asked;
}

CColorRef::CColorRef(const char* name) : m_Name(name) {
  m_Asked.flags = DoRed | DoGreen | DoBlue;
  m_Placed = m_Asked;
}

bool CColorRef::operator==(const CColorRef& other) const {
  if (!m_Name.IsEmpty() && !other.m_Name.IsEmpty()) return strcasecmp(m_Name, other.m_Name) == 0;
  return m_Asked.red == other.m_Asked.red && m_Asked.green == other.m_Asked.green &&
         m_Asked.blue == other.m_Asked.blue && m_Placed.red == other.m_Placed.red &&
         m_Placed.green == other.m_Placed.green && m_Placed.blue == other.m_Placed.blue;
}

CColorRef CColorRef::operator^(const CColorRef& other) const {
  CColorRef result;
  result.m_Asked.red = m_Asked.red ^ other.m_Asked.red;
  result.m_Asked.green = m_Asked.green ^ other.m_Asked.green;
  result.m_Asked.blue = m_Asked.blue ^ other.m_Asked.blue;
  result.m_Placed.red = m_Placed.red ^ other.m_Placed.red;
  result.m_Placed.green = m_Placed.green ^ other.m_Placed.green;
  result.m_Placed.blue = m_Placed.blue ^ other.m_Placed.blue;
  return result;
}
