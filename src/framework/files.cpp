#include "framework/files.h"

#include <sys/stat.h>

int CFile::Open(const char* name, unsigned, CFileException*) {
  Close();
  if (!name) return 0;
  m_pFile = std::fopen(name, "r");
  return m_pFile ? 1 : 0;
}

void CFile::Close() {
  if (m_pFile) std::fclose(m_pFile);
  m_pFile = nullptr;
}

unsigned long CFile::GetLength() const {
  struct stat info;
  if (!m_pFile || fstat(fileno(m_pFile), &info) != 0) return 0;
  return static_cast<unsigned long>(info.st_size);
}

unsigned CFile::Read(void* buffer, unsigned count) {
  if (!m_pFile || count == 0) return 0;
  return static_cast<unsigned>(std::fread(buffer, 1, count, m_pFile));
}

unsigned CStdioFile::Read(void* buffer, unsigned count) {
  if (!m_pFile || count == 0) return 0;
  unsigned char* out = static_cast<unsigned char*>(buffer);
  unsigned kept = 0;
  while (kept < count) {
    int c = std::getc(m_pFile);
    if (c == EOF) break;
    if (c != '\r') out[kept++] = static_cast<unsigned char>(c);
  }
  return kept;
}
