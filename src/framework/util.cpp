#include "framework/util.h"

#include <climits>
#include <csignal>
#include <cstdint>
#include <cstdlib>

int stricmp(const char* a, const char* b) { return strcasecmp(a, b); }

int strnicmp(const char* a, const char* b, size_t n) { return strncasecmp(a, b, n); }

int MulDiv(int a, int b, int c) {
  // The quotient INT_MIN / -1 traps in hardware just as a zero divisor does.
  if (c == 0 || c == -1) {
    int32_t product = static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
    if (c == 0 || product == INT_MIN) {
      std::raise(SIGFPE);
      std::abort();
    }
    return -product;
  }
  // Unsigned multiply gives the same 32-bit wrap without undefined behaviour.
  int32_t product = static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
  return product / c;
}
