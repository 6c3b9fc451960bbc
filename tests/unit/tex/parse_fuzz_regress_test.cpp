// Inputs that once broke the parse round trip, kept in tests/fuzz/regress,
// replayed as ordinary tests; and a few hand-made hostile inputs.
#include <gtest/gtest.h>

#include <dirent.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/parse_round_trip.h"
#include "support/tex_parse.h"

namespace {
class ParseFuzzRegress : public ztest::TexParseTest {};

std::string Replay(const std::string& text) {
  return zfuzz::RoundTrip(reinterpret_cast<const uint8_t*>(text.data()), text.size());
}

TEST_F(ParseFuzzRegress, SavedInputsRoundTrip) {
  const std::string dir = std::string(ZEPHRIN_SOURCE_DIR) + "/tests/fuzz/regress";
  DIR* d = opendir(dir.c_str());
  ASSERT_NE(d, nullptr);
  while (dirent* entry = readdir(d)) {
    if (entry->d_name[0] == '.') continue;
    std::ifstream in(dir + "/" + entry->d_name, std::ios::binary);
    std::stringstream buffer;
    buffer << in.rdbuf();
    SCOPED_TRACE(entry->d_name);
    EXPECT_EQ(Replay(buffer.str()), "");
  }
  closedir(d);
}

TEST_F(ParseFuzzRegress, HostileInputsRoundTrip) {
  const std::vector<std::string> inputs = {
      "", "}", "{", "$", "$$", "\\[", "\\(", "^", "_", "$^_^_$", "\\over", "$\\over\\over$", "{\\frac}",
      "\\begin{displaymath}\\eqno", "$$\\leqno\\eqno$$", "\\\"", "\\symbol", "\\bibitem", "\\overset",
      "\\csname", std::string("a\0b", 3), "\xff\xfe$\x80", "\\hat\\hat\\hat", "$x''''$", "\\item[",
  };
  for (const std::string& input : inputs) {
    SCOPED_TRACE(input);
    EXPECT_EQ(Replay(input), "");
  }
}
}  // namespace
