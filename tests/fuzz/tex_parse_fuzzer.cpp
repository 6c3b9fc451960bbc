// libFuzzer target: any bytes as a TeX document, through parse, print,
// re-parse, copy and delete. Built only with clang (ZEPHRIN_FUZZ).
#include <cstdio>
#include <cstdlib>

#include "fuzz/parse_round_trip.h"
#include "symbols/string_pool.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  TStringPool::InitializeGlobal();
  CZrError::Set_ReportParseErrors(kReportAtEnd);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string fault = zfuzz::RoundTrip(data, size);
  if (!fault.empty()) {
    std::fprintf(stderr, "round trip fault: %s\n", fault.c_str());
    std::abort();
  }
  return 0;
}
