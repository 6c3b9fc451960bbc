// A small copyable node for the tests of node-owning properties: counts live
// instances so that tests can see copies made and deletions done.
#pragma once

#include "symbols/copyable_node.h"

namespace ztest {
class TTestNode : public TCopyableNode {
 public:
  explicit TTestNode(int value) : m_nValue(value) { ++fg_nLive; }
  TTestNode(const TTestNode& other) : TCopyableNode(other), m_nValue(other.m_nValue) { ++fg_nLive; }
  ~TTestNode() override { --fg_nLive; }
  TTestNode* Copy() const override { return new TTestNode(*this); }

  int m_nValue;
  static inline int fg_nLive = 0;
};
}  // namespace ztest
