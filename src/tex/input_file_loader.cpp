#include "tex/input_file_loader.h"

#include <unistd.h>

#include <string>

#include "framework/files.h"
#include "framework/url.h"
#include "framework/util.h"

namespace {
CInputFileLoader* fg_pGlobalLoader = nullptr;
}  // namespace

CInputFileLoader* CInputFileLoader::Get_Global() {
  static CLocalInputFileLoader fg_DefaultLoader;
  return fg_pGlobalLoader ? fg_pGlobalLoader : &fg_DefaultLoader;
}

void CInputFileLoader::Set_Global(CInputFileLoader* loader) { fg_pGlobalLoader = loader; }

int CLocalInputFileLoader::LoadStringFromUrl(const CString& url, CString& text, int, TFmtDocumentNode*) {
  text.Empty();
  CString path;
  if (strnicmp(url, "file:", 5) == 0)
    path = FileUrlToFile(url);
  else if (url.Find("://") >= 0)
    return 0;  // a remote file: nobody here can fetch it
  else
    path = url;
  CStdioFile file;
  if (!file.Open(path, CFile::modeRead, nullptr)) return 0;
  std::string content;
  char block[4096];
  while (unsigned count = file.Read(block, sizeof block)) content.append(block, count);
  text = CString(std::move(content));
  return 1;
}

CString CLocalInputFileLoader::FileUrlFromPath(const char* name) {
  std::string path = name ? name : "";
  if (path.empty() || path[0] != '/') {
    char directory[4096];
    if (getcwd(directory, sizeof directory)) path = std::string(directory) + "/" + path;
  }
  return CString("file:") + path.c_str();
}
