// The save records of the format context: group state, open lists, math
// styles, and the snapshot that page breaks keep of the walking state.
#pragma once

#include <memory>

#include "framework/collections.h"
#include "framework/color_ref.h"
#include "framework/objects.h"

class TFmtContext;
class TFmtNode;
class TFontFamily;

// Everything that a TeX group restores.
class TGroupState : public CObject {
 public:
  // The present state of the context and of the class-wide font and colour.
  explicit TGroupState(const TFmtContext& context);
  TGroupState(const TGroupState&) = default;

  // Style first (it reselects the family at the style's size), then the sizes
  // and family that were saved, then colour, so that the GC ends as saved.
  void UpdateFromSavedState(TFmtContext& context) const;

  CColorRef m_Color;
  TFontFamily* m_pFontFamily = nullptr;  // not owned
  int m_nCase = 0;
  int m_nCurrentFontSize = 0;
  int m_nStyleBaseFontSize = 0;
  int m_nStyle = 0;
  int m_nJustification = 0;
  int m_bOpaqueObjects = 0;
  int m_bColorForced = 0;
};

// One open list.
class TListEnvironment : public CObject {
 public:
  TListEnvironment(int type, int labelSep, int labelWidth, int leftMargin, int rightMargin,
                   const TFmtNode* pDefaultLabel);
  TListEnvironment(const TListEnvironment& other);  // copies the label
  ~TListEnvironment() override;

  int m_nType;
  int m_nCounter = 1;
  int m_nLabelSep;
  int m_nLabelWidth;
  int m_nLeftMargin;
  int m_nRightMargin;
  std::unique_ptr<TFmtNode> m_pDefaultLabel;  // owned copy, or null
};

// One entry of the math style stack.
class TStyle : public CObject {
 public:
  TStyle(int fontSize, int style) : m_nFontSize(fontSize), m_nStyle(style) {}
  int m_nFontSize;  // KFontSize
  int m_nStyle;     // KStyle
};

// A frozen copy of the walking state; owns deep copies of the three stacks.
class TFmtSnapShot : public CObject {
 public:
  explicit TFmtSnapShot(const TFmtContext& context);
  TFmtSnapShot(const TFmtSnapShot&) = delete;
  TFmtSnapShot& operator=(const TFmtSnapShot&) = delete;
  ~TFmtSnapShot() override;

  int m_nEnumerationDepth;
  int m_nFootnoteCounter;
  int m_nItemizeDepth;
  int m_nLeftMargin;
  int m_nRightMargin;
  int m_nTop;
  CObList m_ListEnvironments;  // of TListEnvironment, owned, head = innermost
  CObList m_GroupStates;       // of TGroupState, owned
  CObList m_Styles;            // of TStyle, owned
};

// Mix-in for a node that keeps a snapshot (page breaks).
class MSnapShot {
 public:
  MSnapShot() = default;
  // A copied node starts without a snapshot: the next walk takes one.
  MSnapShot(const MSnapShot&) {}
  MSnapShot& operator=(const MSnapShot&) { return *this; }
  virtual ~MSnapShot() = default;

  TFmtSnapShot* GetSnapShot() const { return m_pSnapShot.get(); }
  // Takes ownership; the old snapshot is deleted.
  void SetSnapShot(TFmtSnapShot* snapshot) { m_pSnapShot.reset(snapshot); }

 private:
  std::unique_ptr<TFmtSnapShot> m_pSnapShot;
};
