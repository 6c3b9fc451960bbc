#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "symbols/global_strings.h"

namespace {
// The start-up of the host, plus the two tables that the node classes load.
TStringPool& StartSymbols() {
  TStringPool::InitializeGlobal();
  TGlobalString::Initialize();
  TGlobalString::InitializeSymbolFonts();
  TGlobalString::InitializeAlwaysDrawProperties();
  TGlobalString::InitializeVerticalListProperties();
  return *TStringPool::g_pGlobal;
}

std::string Fresh(const char* text) { return std::string(text); }

TFontIndexProperty* Glyph(const char* name) {
  return TStringPool::g_pGlobal->GetFontIndex(Fresh(name).c_str(), TGlobalString::g_pTEXFONTINDEX);
}
int Flag(const char* name, const char* property) {
  return TStringPool::g_pGlobal->GetBoolean(Fresh(name).c_str(), property);
}

// Every property pointer on every name the tables mention, to see that a
// second start puts nothing new.
std::map<std::string, std::vector<const TProperty*>> Snapshot(TStringPool& pool) {
  std::map<std::string, std::vector<const TProperty*>> shot;
  auto take = [&](const char* name) {
    std::vector<const TProperty*>& values = shot[name];
    if (const TPropertyList* list = pool.GetPropertyList(name))
      for (const TKeyValue* pair = list->Get_Head(); pair; pair = pair->Get_Next()) values.push_back(pair->Get_Value());
  };
  for (const auto& row : TGlobalString::StringTable()) take(row.text);
  for (const auto& table : TGlobalString::SymbolPropertyTables())
    for (const char* name : table.names) take(name);
  for (const auto& row : TGlobalString::ColorTable()) take(row.key);
  return shot;
}
}  // namespace

TEST(GlobalStrings, VariablesHoldTheCanonicalTexts) {
  TStringPool& pool = StartSymbols();
  EXPECT_EQ(TGlobalString::g_pbegin, pool.Put(Fresh("begin").c_str()));
  EXPECT_STREQ(TGlobalString::g_pendverbatim, "\\end{verbatim}");
  EXPECT_STREQ(TGlobalString::g_pCS_DOUBLEQUOTE, "\"");
  EXPECT_STREQ(TGlobalString::g_pTEXFONTINDEX, "_TEXFONTINDEX");
  // 45 property and symbol names, 8 other spellings, 55 control sequences;
  // every variable distinct and filled with the pool's own pointer.
  auto rows = TGlobalString::StringTable();
  EXPECT_EQ(rows.size(), 45u + 8u + 55u);
  std::set<const char**> variables;
  std::set<std::string> texts;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_TRUE(variables.insert(row.variable).second);
    EXPECT_TRUE(texts.insert(row.text).second);
    EXPECT_EQ(*row.variable, pool.Put(Fresh(row.text).c_str()));
  }
}

TEST(GlobalStrings, SecondStartChangesNothing) {
  TStringPool& pool = StartSymbols();
  const auto before = Snapshot(pool);
  const int names = pool.Get_NameCount();
  const char* begin = TGlobalString::g_pbegin;
  TGlobalString::Initialize();
  EXPECT_EQ(TGlobalString::g_pbegin, begin);
  EXPECT_EQ(pool.Get_NameCount(), names);
  EXPECT_EQ(Snapshot(pool), before);
  // The glyph table loads again by replacement: the same facts stand.
  TGlobalString::InitializeSymbolFonts();
  EXPECT_EQ(pool.Get_NameCount(), names);
  EXPECT_EQ(Glyph("mho")->Get_Code(), 102);
  EXPECT_EQ(Glyph("AA"), nullptr);
}

// Each family of names is one table; every row is a distinct name, and after
// start every row's name carries the family's flag. The counts are the
// families' sizes as the vocabulary defines them.
TEST(GlobalStrings, EveryNameTableRowIsLoadedOnce) {
  StartSymbols();
  const std::map<std::string, size_t> sizes = {
      {"_DELIMITER", 15},     {"_LOGLIKE", 41},           {"_CENTEREDSCRIPTS", 27}, {"_VARIABLESIZED", 14},
      {"_BINARYOP", 40},      {"_RELATION", 44},          {"_ALWAYSDRAW", 54 + 2},  {"_VERTICALLIST", 15},
      {"_PARAGRAPHSTARTER", 6}, {"_PARAGRAPHENDER", 37},  {"_GOESANYWHERE", 54},    {"_NOCARETDESCENT", 16},
  };
  std::vector<TNameTable> tables;
  for (auto group : {TGlobalString::SymbolPropertyTables(), TGlobalString::AlwaysDrawTables(),
                     TGlobalString::VerticalListTables()})
    tables.insert(tables.end(), group.begin(), group.end());
  std::set<std::string> seenProperties;
  for (const TNameTable& table : tables) {
    const char* property = *table.property;
    SCOPED_TRACE(property);
    EXPECT_TRUE(seenProperties.insert(property).second) << "one table per property";
    ASSERT_TRUE(sizes.count(property));
    EXPECT_EQ(table.names.size(), sizes.at(property));
    std::set<std::string> names(table.names.begin(), table.names.end());
    EXPECT_EQ(names.size(), table.names.size()) << "a name twice in one table";
    for (const char* name : table.names) EXPECT_EQ(Flag(name, property), 1) << name;
  }
  EXPECT_EQ(seenProperties.size(), sizes.size());
}

TEST(GlobalStrings, MathFamiliesOverlapWhereTheyShould) {
  StartSymbols();
  using G = TGlobalString;
  EXPECT_EQ(Flag("bmod", G::g_pLOGLIKE), 1);
  EXPECT_EQ(Flag("bmod", G::g_pBINARYOP), 1);
  EXPECT_EQ(Flag("backslash", G::g_pDELIMITER), 1);
  EXPECT_EQ(Flag("backslash", G::g_pBINARYOP), 1);
  EXPECT_EQ(Flag("land", G::g_pRELATION), 1);
  EXPECT_EQ(Flag("rightarrow", G::g_pRELATION), 0);  // arrows are not relations
  EXPECT_EQ(Flag("arg", G::g_pCENTEREDSCRIPTS), 1);
  EXPECT_EQ(Flag("int", G::g_pVARIABLESIZED), 1);
  EXPECT_EQ(Flag("int", G::g_pCENTEREDSCRIPTS), 0);
  // A log-like function has no glyph: its name is its text.
  EXPECT_EQ(Glyph("sin"), nullptr);
  EXPECT_EQ(Flag("_BEGINGROUP", G::g_pALWAYSDRAW), 1);
}

TEST(GlobalStrings, SymbolTableRowsAndLaterRowsWin) {
  StartSymbols();
  auto rows = TGlobalString::SymbolFontTable();
  EXPECT_EQ(rows.size(), 495u);
  std::map<std::string, TSymbolFontRow> last;
  int glyphRows = 0, greekRows = 0;
  for (const auto& row : rows) {
    last[row.name] = row;
    glyphRows += row.code != 0;
    greekRows += row.greek != 0;
  }
  EXPECT_EQ(glyphRows, 483);
  EXPECT_EQ(greekRows, 0);
  EXPECT_EQ(last.size(), 488u);
  // What stands on every name is its last row, or nothing for code 0.
  for (const auto& [name, row] : last) {
    SCOPED_TRACE(name);
    TFontIndexProperty* glyph = Glyph(name.c_str());
    if (row.code == 0) {
      EXPECT_EQ(glyph, nullptr);
    } else {
      ASSERT_NE(glyph, nullptr);
      EXPECT_EQ(glyph->Get_FontTag(), row.tag);
      EXPECT_EQ(glyph->Get_Code(), row.code);
    }
    EXPECT_EQ(Flag(name.c_str(), TGlobalString::g_pGREEK), 0);
  }
}

TEST(GlobalStrings, SymbolFactsByHand) {
  StartSymbols();
  const struct {
    const char* name;
    int tag, code;
  } glyphs[] = {
      // The seven names with two rows, each at its later row.
      {"diagup", 7, 233}, {"mho", 8, 102},      {"succapprox", 8, 118}, {"geqslant", 7, 102},
      {"sqsubset", 8, 193}, {"sqsupset", 8, 194}, {"varsubsetneq", 8, 40},
      // Shared codes that stay as they are.
      {"eta", 7, 50}, {"iota", 7, 50}, {"Updownarrow", 6, 109}, {"updownarrow", 6, 109},
      {"lq", 0, 96}, {"``", 8, 246}, {"_BbbR", 8, 82}, {"rightarrow", 6, 33},
  };
  for (const auto& g : glyphs) {
    SCOPED_TRACE(g.name);
    TFontIndexProperty* glyph = Glyph(g.name);
    ASSERT_NE(glyph, nullptr);
    EXPECT_EQ(glyph->Get_FontTag(), g.tag);
    EXPECT_EQ(glyph->Get_Code(), g.code);
  }
  for (const char* name : {"AA", "aa", "\"A", "\"u"}) EXPECT_EQ(Glyph(name), nullptr) << name;
}

TEST(GlobalStrings, NamedColours) {
  TStringPool& pool = StartSymbols();
  auto colour = [&](const char* key) { return pool.GetColor(Fresh(key).c_str(), TGlobalString::g_pCOLOR); };
  EXPECT_EQ(TGlobalString::ColorTable().size(), 21u);
  std::set<std::string> keys;
  for (const auto& row : TGlobalString::ColorTable()) {
    EXPECT_TRUE(keys.insert(row.key).second) << row.key;
    EXPECT_NE(colour(row.key), nullptr) << row.key;
  }
  const CColorRef& white = colour("white")->Get_Color();
  EXPECT_EQ(white.Red(), 252);
  EXPECT_EQ(white.Green(), 252);
  EXPECT_EQ(white.Blue(), 252);
  EXPECT_STREQ(white.m_Name, "white");
  const CColorRef& silver = colour("silver")->Get_Color();
  const CColorRef& gray = colour("gray")->Get_Color();
  EXPECT_EQ(silver.m_Asked, gray.m_Asked);  // same numbers, 190 each
  EXPECT_EQ(silver.Red(), 190);
  EXPECT_STREQ(silver.m_Name, "gray");
  EXPECT_STREQ(gray.m_Name, "grey");
  EXPECT_EQ(colour("green")->Get_Color().Green(), 128);
  EXPECT_EQ(colour("lime")->Get_Color().Green(), 255);
  EXPECT_STREQ(colour("maroon")->Get_Color().m_Name, "DarkRed");
  EXPECT_EQ(colour("Red"), nullptr);  // keys are case-sensitive
}

TEST(GlobalStrings, PutHelpersUseTheGlobalNames) {
  TStringPool& pool = StartSymbols();
  struct Handlers {
    static void Extent(TFmtNode*, int, TFmtContext&) {}
    static void Draw(TFmtNode*, int, TFmtContext&) {}
    static TFmtNode* Parse(TFmtControlSequenceNode*, TTexTokenSource&) { return nullptr; }
  };
  PutDrawProperties("testbox", &Handlers::Extent, &Handlers::Draw);
  PutTexParserProperty("testbox", &Handlers::Parse);
  const TPropertyList* list = pool.GetPropertyList("testbox");
  ASSERT_NE(list, nullptr);
  // Newest key first: _PARSER_TEX, then _DRAW (put after _EXTENT), then _EXTENT.
  const TKeyValue* pair = list->Get_Head();
  EXPECT_EQ(pair->Get_Key(), TGlobalString::g_pPARSER_TEX);
  EXPECT_EQ(pair->Get_Next()->Get_Key(), TGlobalString::g_pDRAW);
  EXPECT_EQ(pair->Get_Next()->Get_Next()->Get_Key(), TGlobalString::g_pEXTENT);
  EXPECT_EQ(pool.GetFunction("testbox", TGlobalString::g_pDRAW)->Get_Handler(), &Handlers::Draw);
  EXPECT_EQ(pool.GetFunction("testbox", TGlobalString::g_pPARSER_TEX)->Get_TexParser(), &Handlers::Parse);

  PutTexFontPropertyX("testgreek", k_FontTagMathExtension2, 44, 1);
  EXPECT_EQ(Flag("testgreek", TGlobalString::g_pGREEK), 1);
}

TEST(GlobalStrings, AxiomSpellingsBecomeNodesOfCanonicalText) {
  TStringPool& pool = StartSymbols();
  // Stands in for the sequence node the format layer makes: keeps its text.
  struct TSpellingNode : TCopyableNode {
    explicit TSpellingNode(const char* text) : m_pText(text) {}
    TSpellingNode* Copy() const override { return new TSpellingNode(*this); }
    const char* m_pText;
  };
  TGlobalString::PutAxiomLogLikeProperties([](const char* spelling) -> TCopyableNode* {
    return new TSpellingNode(spelling);
  });
  const struct {
    const char* name;
    const char* spelling;
  } rows[] = {{"arccos", "acos"}, {"arcsin", "asin"}, {"arctan", "atan"}};
  EXPECT_EQ(TGlobalString::AxiomSpellings().size(), 3u);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    TNodeProperty* property = pool.GetNode(row.name, TGlobalString::g_pAXIOMLOGLIKE);
    ASSERT_NE(property, nullptr);
    EXPECT_EQ(property->Get_NodeAs<TSpellingNode>()->m_pText, pool.Put(Fresh(row.spelling).c_str()));
  }
  EXPECT_EQ(pool.GetNode("arg", TGlobalString::g_pAXIOMLOGLIKE), nullptr);
}

// Under the sanitizer this test is the leak check of a whole start and stop.
TEST(GlobalStrings, StartFreeAndStartAgain) {
  StartSymbols();
  TStringPool::FreeGlobal();
  EXPECT_EQ(TStringPool::g_pGlobal, nullptr);
  TStringPool& pool = StartSymbols();  // a new pool is loaded afresh
  EXPECT_EQ(TGlobalString::g_pbegin, pool.Put(Fresh("begin").c_str()));
  EXPECT_EQ(Flag("bmod", TGlobalString::g_pBINARYOP), 1);
  EXPECT_EQ(Glyph("mho")->Get_Code(), 102);
  TStringPool::FreeGlobal();
}
