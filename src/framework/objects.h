// Root classes: CObject, CArchive and the exceptions.
#pragma once

class CArchive {
 public:
  // Nothing ever fills an archive: documents are not persisted.
  ~CArchive() = default;
};

class CObject {
 public:
  virtual ~CObject() = default;
  virtual void Serialize(CArchive&) {}
  virtual void AssertValid() const {}
};

class CException : public CObject {
 public:
  CException() = default;
  int IsKindOf(int type) const { return type == m_nType; }
  // The throw machinery owns the object; nothing to free.
  void Delete() {}

 protected:
  int m_nType = 0;
};

// Kept for the shape of callers; exceptions carry no run-time class.
inline int RUNTIME_CLASS(CException&) { return 0; }

class CFileException : public CException {
 public:
  CFileException() = default;
  // None of the arguments is kept: callers only test for failure.
  CFileException(int, int, const char*) {}
};

// An \input file is not there yet: the parse stops and is run again when the
// file arrives. The one exception with meaning in normal running.
class CInputFileException : public CException {};

// An X font could not be loaded. The user has been told once already (see
// CFont::CreateFont); callers give up the font they were building.
class CFontException : public CException {};
