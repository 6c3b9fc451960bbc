// CFile and CStdioFile: read-only owners of a FILE*.
#pragma once

#include <cstdio>

#include "framework/objects.h"

class CFile : public CObject {
 public:
  enum { modeRead = 0 };

  CFile() = default;
  CFile(const char* name, unsigned flags) { Open(name, flags, nullptr); }
  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;
  // Closes a file its owner left open, so that no handle outlives the object.
  ~CFile() override { Close(); }

  // Always opens for reading, whatever the flags say: the class never writes.
  // 1 on success.
  int Open(const char* name, unsigned flags, CFileException* error);
  void Close();
  // st_size from fstat, 0 when that fails or nothing is open.
  unsigned long GetLength() const;
  virtual unsigned Read(void* buffer, unsigned count);
  bool IsOpen() const { return m_pFile != nullptr; }

 protected:
  FILE* m_pFile = nullptr;
};

class CStdioFile : public CFile {
 public:
  using CFile::CFile;
  // Reads up to count kept bytes, dropping every carriage return, so that the
  // parser sees bare newlines. Returns the number of bytes kept.
  unsigned Read(void* buffer, unsigned count) override;
};
