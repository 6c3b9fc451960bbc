#include "support/paths.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace ztest {
std::string DataPath(const std::string& name) { return std::string(ZEPHRIN_TEST_DATA) + "/" + name; }

std::string BuildPath(const std::string& relative) {
  const char* dir = std::getenv("ZEPHRIN_BUILD_DIR");
  return std::string(dir && *dir ? dir : ZEPHRIN_BINARY_DIR) + "/" + relative;
}

std::string MakeTempDir(const std::string& tag) {
  const char* base = std::getenv("TMPDIR");
  std::string pattern = std::string(base && *base ? base : "/tmp") + "/zephrin-" + tag + "-XXXXXX";
  std::vector<char> buffer(pattern.begin(), pattern.end());
  buffer.push_back('\0');
  const char* made = mkdtemp(buffer.data());
  return made ? std::string(made) : std::string();
}

bool WriteFile(const std::string& path, const std::string& bytes) {
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return false;
  bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
  return std::fclose(f) == 0 && ok;
}
}  // namespace ztest
