#include "format/context.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <limits>

#include "device/font_family.h"
#include "errors/parse_errors.h"
#include "format/node.h"
#include "symbols/string_pool.h"

namespace {
// Margins come from document values: saturate rather than wrap.
int SatAdd(int a, int64_t b) {
  return static_cast<int>(std::clamp<int64_t>(int64_t{a} + b, std::numeric_limits<int>::min(),
                                              std::numeric_limits<int>::max()));
}

constexpr unsigned kListEndMismatch = 60003;
constexpr unsigned kListEndWithoutList = 60004;
}  // namespace

// ---- save records ----------------------------------------------------------

TGroupState::TGroupState(const TFmtContext& context)
    : m_Color(TFmtContext::fg_CurrentColor),
      m_pFontFamily(TFontFamily::fg_pCurrent),
      m_nCase(context.m_nCase),
      m_nCurrentFontSize(TFontFamily_PI::fg_CurrentFontSize),
      m_nStyleBaseFontSize(TFontFamily_PI::fg_StyleBaseFontSize),
      m_nStyle(TFmtContext::fg_CurrentStyle),
      m_nJustification(context.m_nJustification),
      m_bOpaqueObjects(context.m_bOpaqueObjects),
      m_bColorForced(context.m_bColorForced) {}

void TGroupState::UpdateFromSavedState(TFmtContext& context) const {
  context.SetStyle(m_nStyle);
  context.m_nCase = m_nCase;
  TFontFamily_PI::fg_CurrentFontSize = m_nCurrentFontSize;
  TFontFamily_PI::fg_StyleBaseFontSize = m_nStyleBaseFontSize;
  // The family made current again, at the restored size.
  if (m_pFontFamily) {
    m_pFontFamily->MakeCurrentAndSelect(context);
  } else {
    TFontFamily::fg_pCurrent = nullptr;
  }
  context.m_nJustification = m_nJustification;
  TFmtContext::fg_CurrentColor = m_Color;
  context.SetTextColor(TFmtContext::fg_CurrentColor);
  context.m_bOpaqueObjects = m_bOpaqueObjects;
  context.m_bColorForced = m_bColorForced;
}

TListEnvironment::TListEnvironment(int type, int labelSep, int labelWidth, int leftMargin, int rightMargin,
                                   const TFmtNode* pDefaultLabel)
    : m_nType(type),
      m_nLabelSep(labelSep),
      m_nLabelWidth(labelWidth),
      m_nLeftMargin(leftMargin),
      m_nRightMargin(rightMargin),
      m_pDefaultLabel(pDefaultLabel ? pDefaultLabel->Copy() : nullptr) {}

TListEnvironment::TListEnvironment(const TListEnvironment& other)
    : CObject(other),
      m_nType(other.m_nType),
      m_nCounter(other.m_nCounter),
      m_nLabelSep(other.m_nLabelSep),
      m_nLabelWidth(other.m_nLabelWidth),
      m_nLeftMargin(other.m_nLeftMargin),
      m_nRightMargin(other.m_nRightMargin),
      m_pDefaultLabel(other.m_pDefaultLabel ? other.m_pDefaultLabel->Copy() : nullptr) {}

TListEnvironment::~TListEnvironment() = default;

namespace {
template <class T>
void DeepCopyList(const CObList& from, CObList& to) {
  for (CObject* o : from) to.AddTail(new T(*static_cast<const T*>(o)));
}
}  // namespace

TFmtSnapShot::TFmtSnapShot(const TFmtContext& context)
    : m_nEnumerationDepth(context.m_nEnumerationDepth),
      m_nFootnoteCounter(context.m_nFootnoteCounter),
      m_nItemizeDepth(context.m_nItemizeDepth),
      m_nLeftMargin(context.m_nLeftMargin),
      m_nRightMargin(context.m_nRightMargin),
      m_nTop(context.m_nTop) {
  DeepCopyList<TListEnvironment>(context.m_ListEnvironments, m_ListEnvironments);
  DeepCopyList<TGroupState>(context.m_GroupStates, m_GroupStates);
  DeepCopyList<TStyle>(context.m_Styles, m_Styles);
}

TFmtSnapShot::~TFmtSnapShot() {
  for (CObject* o : m_ListEnvironments) delete o;
  for (CObject* o : m_GroupStates) delete o;
  for (CObject* o : m_Styles) delete o;
}

// ---- the context -----------------------------------------------------------

TFmtContext::TFmtContext(const TFmtContext& other) : CObject(other) { CopySimpleFields(other); }

TFmtContext& TFmtContext::operator=(const TFmtContext& other) {
  if (this != &other) CopySimpleFields(other);
  return *this;
}

void TFmtContext::CopySimpleFields(const TFmtContext& other) {
  m_pDocumentNode = nullptr;
  m_bForceDraw = other.m_bForceDraw;
  m_bMathSpacing = other.m_bMathSpacing;
  m_nScriptDepth = other.m_nScriptDepth;
  m_bColorForced = other.m_bColorForced;
  m_bOpaqueObjects = other.m_bOpaqueObjects;
  m_nCase = 0;
  m_nJustification = other.m_nJustification;
  m_nEnumerationDepth = other.m_nEnumerationDepth;
  m_nFootnoteCounter = other.m_nFootnoteCounter;
  m_nItemizeDepth = other.m_nItemizeDepth;
  m_nLeftMargin = other.m_nLeftMargin;
  m_nRightMargin = other.m_nRightMargin;
  m_nTop = other.m_nTop;
  m_pLabelSite = other.m_pLabelSite;
  m_pParentOnVerticalList = other.m_pParentOnVerticalList;
  m_pCaptionRequestor = nullptr;
}

TFmtContext::~TFmtContext() {
  DeleteAll(m_ListEnvironments);
  DeleteAll(m_GroupStates);
  DeleteAll(m_Styles);
}

void TFmtContext::DeleteAll(CObList& list) {
  while (!list.IsEmpty()) delete list.RemoveHead();
}

// ---- group state and styles ----

void TFmtContext::PushGroupState() { m_GroupStates.AddHead(new TGroupState(*this)); }

void TFmtContext::PopGroupState() {
  if (m_GroupStates.IsEmpty()) return;
  std::unique_ptr<TGroupState> saved(static_cast<TGroupState*>(m_GroupStates.RemoveHead()));
  saved->UpdateFromSavedState(*this);
}

void TFmtContext::SelectCurrentFamily() {
  if (TFontFamily::fg_pCurrent) TFontFamily::fg_pCurrent->MakeCurrentAndSelect(*this);
}

void TFmtContext::SetStyle(int style) {
  if (style == fg_CurrentStyle) return;
  fg_CurrentStyle = style;
  // Script sizes relative to the base: scriptscript 0, script 2, else normal.
  const int size = style == k_StyleScriptScript ? 0 : style == k_StyleScript ? 2 : 5;
  TFontFamily_PI::fg_CurrentFontSize = TFontFamily_PI::GetSizeRelativeToBase(size);
  SelectCurrentFamily();
}

void TFmtContext::PushAndSetStyle(int style) {
  m_Styles.AddHead(new TStyle(TFontFamily_PI::fg_CurrentFontSize, fg_CurrentStyle));
  SetStyle(style);
}

void TFmtContext::PopStyle() {
  if (m_Styles.IsEmpty()) return;
  std::unique_ptr<TStyle> saved(static_cast<TStyle*>(m_Styles.RemoveHead()));
  SetStyle(saved->m_nStyle);
  TFontFamily_PI::fg_CurrentFontSize = saved->m_nFontSize;
  SelectCurrentFamily();
}

// ---- lists ----

void TFmtContext::PushListType(int type, int labelSep, int labelWidth, int leftMargin, int rightMargin,
                               const TFmtNode* pDefaultLabel) {
  if (type == 0) ++m_nEnumerationDepth;
  if (type == 2) ++m_nItemizeDepth;
  m_ListEnvironments.AddHead(
      new TListEnvironment(type, labelSep, labelWidth, leftMargin, rightMargin, pDefaultLabel));
  m_nLeftMargin = SatAdd(m_nLeftMargin, int64_t{labelSep} + labelWidth + leftMargin);
  m_nRightMargin = SatAdd(m_nRightMargin, -int64_t{rightMargin});
}

void TFmtContext::RestoreFromListEntry(const TListEnvironment& entry) {
  if (entry.m_nType == 0) --m_nEnumerationDepth;
  if (entry.m_nType == 2) --m_nItemizeDepth;
  m_nLeftMargin = SatAdd(m_nLeftMargin, -(int64_t{entry.m_nLabelSep} + entry.m_nLabelWidth + entry.m_nLeftMargin));
  m_nRightMargin = SatAdd(m_nRightMargin, int64_t{entry.m_nRightMargin});
}

unsigned TFmtContext::PopListType(int type, int bCheck) {
  if (m_ListEnvironments.IsEmpty()) {
    if (!bCheck) return 0;
    CZrError::GeneralError(kListEndWithoutList);
    return kListEndWithoutList;
  }
  std::unique_ptr<TListEnvironment> entry(static_cast<TListEnvironment*>(m_ListEnvironments.RemoveHead()));
  unsigned reported = 0;
  if (bCheck && type != -1 && type != entry->m_nType) {
    // The walk goes on: the entry that is there is the one undone.
    CZrError::GeneralError(kListEndMismatch);
    reported = kListEndMismatch;
  }
  RestoreFromListEntry(*entry);
  return reported;
}

namespace {
const TListEnvironment* Head(const CObList& list) {
  return list.IsEmpty() ? nullptr : static_cast<const TListEnvironment*>(list.GetHead());
}
}  // namespace

int TFmtContext::ListCounter() const {
  const TListEnvironment* head = Head(m_ListEnvironments);
  return head ? head->m_nCounter : 0;
}
int TFmtContext::ListType() const {
  const TListEnvironment* head = Head(m_ListEnvironments);
  return head ? head->m_nType : -2;
}
int TFmtContext::ListLabelWidth() const {
  const TListEnvironment* head = Head(m_ListEnvironments);
  return head ? head->m_nLabelWidth : 0;
}
int TFmtContext::ListLabelSep() const {
  const TListEnvironment* head = Head(m_ListEnvironments);
  return head ? head->m_nLabelSep : 0;
}
TFmtNode* TFmtContext::ListDefaultLabel() const {
  const TListEnvironment* head = Head(m_ListEnvironments);
  return head ? head->m_pDefaultLabel.get() : nullptr;
}

int TFmtContext::IncrementListCounter() {
  if (m_ListEnvironments.IsEmpty()) return 0;
  auto* head = static_cast<TListEnvironment*>(m_ListEnvironments.GetHead());
  const int counter = head->m_nCounter;
  if (head->m_nCounter < std::numeric_limits<int>::max()) ++head->m_nCounter;
  return counter;
}

void TFmtContext::UseCounter(const char* name) {
  TStringPool* pool = TStringPool::g_pGlobal;
  if (!name || !pool) return;
  static const char* const counters[] = {"enumi", "enumii", "enumiii", "enumiv"};
  for (int i = 0; i < 4; ++i)
    if (name == pool->Put(counters[i])) {
      m_nEnumerationDepth = i + 1;
      return;
    }
}

// ---- spaces and case ----

int TFmtContext::QuadOfRoman() {
  TFontFamily* roman = TFontFamily::fg_pRoman;
  if (!roman) return 0;
  TExtendedFont_PI* font = roman->GetFontAtCurrentSize(*this);
  return font ? font->CharacterWidth('M', *this) : 0;
}

char TFmtContext::Case(char c) const {
  const auto u = static_cast<unsigned char>(c);
  switch (m_nCase) {
    case 1: return static_cast<char>(std::tolower(u));
    case 2:
    case 3: return static_cast<char>(std::toupper(u));
    default: return c;
  }
}

const char* TFmtContext::Case(const char* text, int& bAllocated) const {
  if (m_nCase == 0 || !text) {
    bAllocated = 0;
    return text;
  }
  const size_t n = std::strlen(text);
  char* copy = new char[n + 1];
  for (size_t i = 0; i < n; ++i) {
    const auto u = static_cast<unsigned char>(text[i]);
    copy[i] = static_cast<char>(m_nCase == 1 ? std::tolower(u) : std::toupper(u));
  }
  copy[n] = 0;
  bAllocated = 1;
  return copy;
}

// ---- vertical list ----

void TFmtContext::SetParentNodeOnVerticalList(TFmtNode* node) {
  if (!node) {
    m_pParentOnVerticalList = nullptr;
  } else if (!m_pParentOnVerticalList) {
    m_pParentOnVerticalList = node;
  }
}

// ---- whole state ----

void TFmtContext::Reset() {
  m_nEnumerationDepth = 0;
  m_nItemizeDepth = 0;
  m_nFootnoteCounter = 0;
  DeleteAll(m_ListEnvironments);
  DeleteAll(m_GroupStates);
  DeleteAll(m_Styles);
}

void TFmtContext::BringToDefaultState() {
  while (!m_ListEnvironments.IsEmpty()) PopListType(-1, 0);
  while (!m_Styles.IsEmpty()) PopStyle();
  while (!m_GroupStates.IsEmpty()) PopGroupState();
  m_nEnumerationDepth = 0;
  m_nFootnoteCounter = 0;
  m_nItemizeDepth = 0;
  m_nLeftMargin = 0;
  m_nRightMargin = 0;
  m_nTop = 0;
}

TFmtSnapShot* TFmtContext::SaveState() {
  // The present state rides at the head of the snapshot's group list.
  PushGroupState();
  auto* snapshot = new TFmtSnapShot(*this);
  PopGroupState();
  return snapshot;
}

void TFmtContext::RestoreState(const TFmtSnapShot* snapshot) {
  if (!snapshot) return;
  BringToDefaultState();
  DeepCopyList<TListEnvironment>(snapshot->m_ListEnvironments, m_ListEnvironments);
  DeepCopyList<TGroupState>(snapshot->m_GroupStates, m_GroupStates);
  // Outermost first, so that the innermost (the state at the snapshot) wins.
  for (auto position = m_GroupStates.GetTailPosition(); position != m_GroupStates.GetEnd();)
    static_cast<TGroupState*>(m_GroupStates.GetPrev(position))->UpdateFromSavedState(*this);
  if (!m_GroupStates.IsEmpty()) delete m_GroupStates.RemoveHead();
  m_nEnumerationDepth = snapshot->m_nEnumerationDepth;
  m_nFootnoteCounter = snapshot->m_nFootnoteCounter;
  m_nItemizeDepth = snapshot->m_nItemizeDepth;
  m_nLeftMargin = snapshot->m_nLeftMargin;
  m_nRightMargin = snapshot->m_nRightMargin;
  m_nTop = snapshot->m_nTop;
}

// ---- class-wide ----

void TFmtContext::SetName(CString*& field, const char* name) {
  if (!field) field = new CString;
  *field = name;
}

void TFmtContext::FreeResources() {
  for (CString** name : {&fg_pMathFontName, &fg_pRmFontName, &fg_pSfFontName, &fg_pTtFontName}) {
    delete *name;
    *name = nullptr;
  }
}

int TFmtContext::CanDecreaseAFontSize() {
  return fg_nMathFontPointSize > 8 || fg_nRmFontPointSize > 8 || fg_nSfFontPointSize > 8 ||
         fg_nTtFontPointSize > 8;
}
