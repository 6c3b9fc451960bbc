// Token classes. A token's class is fixed by the scanner; there are no
// category codes. Text arrives as sequence tokens (whole words, numbers,
// verbatim lines), not one token per letter.
#pragma once

#include "framework/cstring.h"
#include "framework/objects.h"

class TMacroProperty;
class TTexMacroArgToken;

class TTexToken : public CObject {
 public:
  virtual TTexToken* Copy() const = 0;
  virtual char GetCharacter() const { return 0; }
  virtual char GetControlCharacter() const { return 0; }
  virtual const char* GetSequence() const { return nullptr; }
  virtual const char* GetControlSequence() const { return nullptr; }
  virtual bool IsCharacter(char) const { return false; }
  virtual bool IsCharacter() const { return false; }
  virtual bool IsControlCharacter() const { return false; }
  // Names are canonical pool texts, compared as pointers; null means any.
  virtual bool IsControlSequence(const char*) const { return false; }
  virtual bool IsSequence(const char*) const { return false; }
  // 1..9 for a sequence "#1".."#9", else -1.
  virtual int IsTexParameter() const { return -1; }
  virtual TTexMacroArgToken* IsTexMacroArg() { return nullptr; }
  virtual TMacroProperty* IsTexMacroProperty() const { return nullptr; }
  // Appends the token as TeX and advances column by what it wrote.
  virtual void PrintTex(CString& out, int& column) const = 0;
};

class TTexCharacterToken : public TTexToken {
 public:
  explicit TTexCharacterToken(char c) : m_c(c) {}
  TTexToken* Copy() const override { return new TTexCharacterToken(*this); }
  char GetCharacter() const override { return m_c; }
  bool IsCharacter(char c) const override { return c == m_c; }
  bool IsCharacter() const override { return true; }
  void PrintTex(CString& out, int& column) const override;

 private:
  char m_c;
};

class TTexControlCharacterToken : public TTexToken {
 public:
  // White space after a backslash ("\ ", a backslash before a newline or tab)
  // is the control blank.
  explicit TTexControlCharacterToken(char c);
  TTexToken* Copy() const override { return new TTexControlCharacterToken(*this); }
  char GetControlCharacter() const override { return m_c; }
  // The one-letter name interned, so that "\," looks up like a control sequence.
  const char* GetControlSequence() const override;
  bool IsControlCharacter() const override { return true; }
  void PrintTex(CString& out, int& column) const override;

 private:
  char m_c;
};

class TTexControlSequenceToken : public TTexToken {
 public:
  explicit TTexControlSequenceToken(const char* canonicalName) : m_pName(canonicalName) {}
  TTexToken* Copy() const override { return new TTexControlSequenceToken(*this); }
  const char* GetControlSequence() const override { return m_pName; }
  bool IsControlSequence(const char* name) const override { return !name || name == m_pName; }
  void PrintTex(CString& out, int& column) const override;

 private:
  const char* m_pName;  // canonical pool text
};

class TTexSequenceToken : public TTexToken {
 public:
  explicit TTexSequenceToken(const char* canonicalText) : m_pText(canonicalText) {}
  TTexToken* Copy() const override { return new TTexSequenceToken(*this); }
  const char* GetSequence() const override { return m_pText; }
  bool IsSequence(const char* text) const override { return !text || text == m_pText; }
  int IsTexParameter() const override;
  void PrintTex(CString& out, int& column) const override;

 protected:
  const char* m_pText;  // canonical pool text
};

// "#n" inside a macro body, bound to the macro it belongs to.
class TTexMacroArgToken : public TTexSequenceToken {
 public:
  // number is 1..9 for a real parameter; the text is "#" and its digit.
  TTexMacroArgToken(int number, const char* macroName);
  TTexToken* Copy() const override { return new TTexMacroArgToken(*this); }
  TTexMacroArgToken* IsTexMacroArg() override { return this; }
  int GetArgumentNumber() const { return m_nArgument; }
  const char* GetMacroName() const { return m_pMacroName; }
  // An argument met outside any definition is bound when it is read.
  void SetMacroName(const char* macroName) { m_pMacroName = macroName; }

 private:
  int m_nArgument;
  const char* m_pMacroName;  // canonical or null
};

class TTexMacroPropertyToken : public TTexToken {
 public:
  explicit TTexMacroPropertyToken(TMacroProperty* macro) : m_pMacro(macro) {}
  TTexToken* Copy() const override { return new TTexMacroPropertyToken(*this); }
  TMacroProperty* IsTexMacroProperty() const override { return m_pMacro; }
  void PrintTex(CString&, int&) const override {}

 private:
  TMacroProperty* m_pMacro;  // not owned
};
