// zephrin-inspect tree FILE and tex FILE: the format tree that a document
// parses into, as an indented list or printed back as TeX. No X server.
#include <cstdio>
#include <memory>

#include "errors/parse_errors.h"
#include "format/compound_node.h"
#include "format/tree_dump.h"
#include "tex/input_file_loader.h"
#include "tex/token_source.h"

namespace {
int ParseAndShow(int argc, char** argv, const char* verb, bool asTree) {
  if (argc != 1) {
    std::fprintf(stderr, "usage: zephrin-inspect %s FILE\n", verb);
    return 2;
  }
  FILE* file = std::fopen(argv[0], "r");
  if (!file) {
    std::fprintf(stderr, "zephrin-inspect: cannot open %s\n", argv[0]);
    return 1;
  }
  TFmtNode::InitializeTexParser();
  CLocalInputFileLoader loader(CLocalInputFileLoader::FileUrlFromPath(argv[0]));
  CInputFileLoader::Set_Global(&loader);
  CZrError::Set_ReportParseErrors(kReportAtEnd);
  auto root = std::make_unique<TFmtCompoundNode>();
  int status = 0;
  {
    TTexTokenSource source(loader.Get_CurrentUrl(), file);
    source.Set_StopAtMissingFile(1);
    TFmtNode* result = root->ParseTex(source);
    if (result != root.get()) root.reset(TFmtCompoundNode::CompoundIt(result));
    if (source.Get_WaitingForFile()) std::fprintf(stderr, "zephrin-inspect: an included file could not be loaded\n");
  }
  CString out;
  int column = 0;
  if (asTree) DumpTree(root.get(), out);
  else root->PrintTex(out, column);
  std::fwrite(out.c_str(), 1, static_cast<size_t>(out.GetLength()), stdout);
  for (CObject* object : CZrError::Get_SavedErrors()) {
    CString text;
    FormatParseError(text, *static_cast<CSavedError*>(object));
    std::fprintf(stderr, "%s\n", text.c_str());
  }
  CZrError::ClearParseErrors();
  CInputFileLoader::Set_Global(nullptr);
  return status;
}
}  // namespace

int InspectVerb_tree(int argc, char** argv) { return ParseAndShow(argc, argv, "tree", true); }
int InspectVerb_tex(int argc, char** argv) { return ParseAndShow(argc, argv, "tex", false); }
