// Where tests find their data and the build's products.
#pragma once

#include <string>

namespace ztest {
// tests/data/<name>
std::string DataPath(const std::string& name);
// <build dir>/<relative>
std::string BuildPath(const std::string& relative);
// A fresh empty directory under the system's temporary directory, removed by
// the caller (or left for the OS when a test fails).
std::string MakeTempDir(const std::string& tag);
// Writes bytes to a file; returns false on failure.
bool WriteFile(const std::string& path, const std::string& bytes);
}  // namespace ztest
