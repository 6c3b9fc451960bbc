// Small helpers shared by every layer.
#pragma once

#include <strings.h>

#include <cstddef>

int stricmp(const char* a, const char* b);
int strnicmp(const char* a, const char* b, size_t n);

// a * b / c with a 32-bit product (it wraps rather than widening) and
// truncation toward zero. A zero divisor is a fatal trap (SIGFPE).
int MulDiv(int a, int b, int c);

// Diagnostic trace: compiled out of the delivered process; a developer build
// with -DZEPHRIN_TRACE prints to standard error.
#ifdef ZEPHRIN_TRACE
#include <cstdio>
#define TRACE(...) std::fprintf(stderr, __VA_ARGS__)
#else
#define TRACE(...) ((void)0)
#endif
