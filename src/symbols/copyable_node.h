// What a node property needs of the node it owns.
#pragma once

#include "framework/objects.h"

// The format node base derives from this class and overrides Copy with its
// covariant deep copy (TFmtNode* Copy() const), so a property can own, clone
// and delete a node without the symbol layer knowing the node classes.
class TCopyableNode : public CObject {
 public:
  // A new, independent node of the same class; the caller owns it.
  virtual TCopyableNode* Copy() const = 0;
};
