// The bound on nesting while parsing. Groups, arguments and scripts parse by
// recursion; past the bound a token's node stands as it was made, unparsed, so
// that no input can exhaust the stack, and the trees that the parser builds
// stay shallow enough to print, copy and delete by recursion too.
#pragma once

class TTexTokenSource;

class TParseDepth {
 public:
  // TeX itself stops at a few hundred open groups; documents never come near.
  static constexpr int fg_nMaxParseDepth = 1000;

  // Enters one level. Past the bound, reports once per outermost parse and
  // answers false: the caller must not descend.
  static bool Enter(TTexTokenSource& source);
  static void Leave() {
    if (--fg_nDepth == 0) fg_bReported = false;
  }
  static int Get_Depth() { return fg_nDepth; }

 private:
  static inline int fg_nDepth = 0;
  static inline bool fg_bReported = false;
};

// Enter/Leave as a scope; Leave runs only if Enter succeeded.
class TParseDepthGuard {
 public:
  explicit TParseDepthGuard(TTexTokenSource& source) : m_bEntered(TParseDepth::Enter(source)) {}
  TParseDepthGuard(const TParseDepthGuard&) = delete;
  TParseDepthGuard& operator=(const TParseDepthGuard&) = delete;
  ~TParseDepthGuard() {
    if (m_bEntered) TParseDepth::Leave();
  }
  bool Entered() const { return m_bEntered; }

 private:
  bool m_bEntered;
};

// Parses a node just made for a token and answers what it parsed into. The
// node is deleted when the answer is something else, and also when the parse
// unwinds (an \input that has to wait throws through every open parser), so
// that no half-built subtree is lost.
template <class TNode, class TSource>
TNode* ParseFreshNode(TNode* node, TSource& source) {
  struct Owner {
    TNode* p;
    ~Owner() { delete p; }
  } owner{node};
  auto* result = node->ParseTex(source);
  if (result == node) owner.p = nullptr;
  return result;
}
