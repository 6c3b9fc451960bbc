// The leaves of the tree: one character, a backslash and one character, a
// run of text, and a named symbol or command. A control sequence has no class
// per command: its behaviour is looked up on its interned name each time.
#pragma once

#include "format/node.h"

class TTexToken;
class TExtendedFont_PI;

class TFmtCharacterNode : public TFmtNode {
 public:
  explicit TFmtCharacterNode(const TTexToken& token);
  explicit TFmtCharacterNode(char c) : m_c(c) {}
  TFmtCharacterNode(const TFmtCharacterNode&) = default;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtCharacterNode* CopyDerived() const { return new TFmtCharacterNode(*this); }
  TFmtExtent* Compose(TFmtContext& context) override;
  void Description(CString& out) override;
  void Draw(TFmtContext& context) override;
  int IsCharacter(char c) const override { return c == m_c; }
  TFmtCharacterNode* IsCharacterNode() const override { return const_cast<TFmtCharacterNode*>(this); }
  // Punctuation stays with the word before it, openers with the word after.
  int DontBreakAfter() const override;
  int DontBreakBefore() const override;
  int IsWhiteSpace() const override;
  TFmtNode* ParseTex(TTexTokenSource& source) override;
  void PrintTex(CString& out, int& column) const override;
  void SimplyStringify(CString& out) override;

  char Get_Character() const { return m_c; }
  void Set_Character(char c) { m_c = c; }
  // A sign at the start of a list is unary: no operator space around it.
  void Set_NoExtraSpace(int flag) { m_bNoExtraSpace = flag; }
  int Get_NoExtraSpace() const { return m_bNoExtraSpace; }

 private:
  // Extra width and the part of it drawn before the glyph, by the math table.
  void MathExtras(TFmtContext& context, int& extra, int& before, int& roman) const;

  char m_c;
  int32_t m_bNoExtraSpace = 0;
};

class TFmtControlCharacterNode : public TFmtNode {
 public:
  explicit TFmtControlCharacterNode(const TTexToken& token);
  explicit TFmtControlCharacterNode(char c) : m_c(c) {}
  TFmtControlCharacterNode(const TFmtControlCharacterNode&) = default;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtControlCharacterNode* CopyDerived() const { return new TFmtControlCharacterNode(*this); }
  TFmtExtent* Compose(TFmtContext& context) override;
  int DontBreakAfter() const override { return m_c == '{'; }
  int DontBreakBefore() const override { return m_c == '}'; }
  void Description(CString& out) override;
  void Draw(TFmtContext& context) override;
  TFontFamily* GetFontFamilyAndCharacter(int& code) override;
  int IsControlCharacterNode(char c) const override { return c == m_c; }
  TFmtControlCharacterNode* IsControlCharacterNode() const override {
    return const_cast<TFmtControlCharacterNode*>(this);
  }
  TFmtNode* ParseTex(TTexTokenSource& source) override;
  void PrintTex(CString& out, int& column) const override;
  void SimplyStringify(CString& out) override;

  char Get_Character() const { return m_c; }
  // The one-letter name, interned.
  const char* GetControlSequence() const;

 private:
  char m_c;
};

class TFmtSequenceNode : public TFmtNode {
 public:
  explicit TFmtSequenceNode(const TTexToken& token);
  explicit TFmtSequenceNode(const char* text);
  explicit TFmtSequenceNode(const CString& text) : TFmtSequenceNode(text.c_str()) {}
  TFmtSequenceNode(const TFmtSequenceNode& other);
  TFmtSequenceNode& operator=(const TFmtSequenceNode&) = delete;
  ~TFmtSequenceNode() override;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtSequenceNode* CopyDerived() const { return new TFmtSequenceNode(*this); }
  TFmtExtent* Compose(TFmtContext& context) override;
  void Description(CString& out) override;
  void Draw(TFmtContext& context) override;
  TFmtSequenceNode* IsSequenceNode() const override { return const_cast<TFmtSequenceNode*>(this); }
  TFmtNode* ParseTex(TTexTokenSource& source) override;
  void PrintTex(CString& out, int& column) const override;
  void SimplyStringify(CString& out) override;

  void Append(char c);
  void Append(const TFmtCharacterNode* node) {
    if (node) Append(node->Get_Character());
  }
  void Append(const TFmtControlCharacterNode* node) {
    if (node) Append(node->Get_Character());
  }
  void SetSequence(const char* text);
  const char* Get_Sequence() const { return m_pText; }
  int Get_Length() const { return m_nLength; }

 private:
  void InitMembers(const char* text);
  void DeleteMembers();
  void CopyMembers(const TFmtSequenceNode& other) { InitMembers(other.m_pText); }
  void ComposeByCharacter(const char* text, TFmtContext& context);

  char* m_pText = nullptr;  // owned, NUL-terminated
  int m_nLength = 0;
  // The pool text when the sequence is one (a parsed word), so that "$$" is
  // told by pointer; null once the text is edited.
  const char* m_pCanonical = nullptr;
};

class TFmtControlSequenceNode : public TFmtNode {
 public:
  explicit TFmtControlSequenceNode(const TTexToken& token);
  // name must be a canonical pool text.
  explicit TFmtControlSequenceNode(const char* name) : m_pName(name) {}
  TFmtControlSequenceNode(const TFmtControlSequenceNode&) = default;

  TFmtNode* Copy() const override { return CopyDerived(); }
  TFmtControlSequenceNode* CopyDerived() const { return new TFmtControlSequenceNode(*this); }
  TFmtExtent* Compose(TFmtContext& context) override;
  const char* ContainsControlSequence() const override { return m_pName; }
  void Description(CString& out) override;
  int DontBreakAfter() const override;
  int DontBreakBefore() const override;
  void Draw(TFmtContext& context) override;
  TFontFamily* GetFontFamilyAndCharacter(int& code) override;
  int GoesOnVerticalList() const override;
  int IsControlSequence(const char* name) const override { return name == m_pName; }
  TFmtControlSequenceNode* IsControlSequenceNode() const override {
    return const_cast<TFmtControlSequenceNode*>(this);
  }
  TFmtNode* ParseTex(TTexTokenSource& source) override;
  void PrintTex(CString& out, int& column) const override;
  void SimplyStringify(CString& out) override;

  const char* Get_Name() const { return m_pName; }
  int Get_Active() const { return m_bActive; }
  void Set_Active(int active) { m_bActive = active; }

  // An interned name made into a node (pool text looked up here).
  static TFmtControlSequenceNode* Make(const char* name);

 private:
  // The font a glyph of the name is set in, and whether it is the larger one.
  TExtendedFont_PI* GlyphFont(TFmtContext& context, TFontFamily* family, int& bLarge) const;

  const char* m_pName;  // canonical, not owned
  int32_t m_bActive = 1;
};

// Prints a backslash and a name as the control-sequence printer does (a
// letter name gets a blank after it, any other goes through \csname).
void PrintTexControlSequenceName(const char* name, CString& out, int& column);
