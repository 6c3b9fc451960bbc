// zephrin-inspect layout FILE --width W [--width W...]: the body of FILE
// composed at (0, 0) between margins 0 and W (logical units), then the same
// tree composed again at each further width as a resize does (status 2).
// Per composition "width W"; per body element "E k CLASS y h d w"; per line
// of a paragraph "L k.n KIND POS w h d adv |TEXT|", fill shown as [fill N].
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include "device/font_family.h"
#include "errors/parse_errors.h"
#include "format/break_nodes.h"
#include "format/compound_node.h"
#include "format/document_node.h"
#include "format/layout_dump.h"
#include "format/paragraph_node.h"
#include "format/vertical_list_node.h"
#include "examine_x.h"
#include "tex/input_file_loader.h"
#include "tex/token_source.h"
#include "verbs.h"


int InspectVerb_layout(int argc, char** argv) {
  const char* file = nullptr;
  std::vector<int> widths;
  bool good = true;
  for (int i = 0; good && i < argc; ++i) {
    if (std::strcmp(argv[i], "--width") == 0 && i + 1 < argc) {
      int width = 0;
      good = ParseInspectInt(argv[++i], &width);
      widths.push_back(width);
    } else if (!file) {
      file = argv[i];
    } else {
      good = false;
    }
  }
  if (!good || !file || widths.empty()) {
    std::fprintf(stderr, "usage: zephrin-inspect layout FILE --width W [--width W...]\n");
    return 2;
  }
  FILE* input = std::fopen(file, "r");
  if (!input) {
    std::fprintf(stderr, "zephrin-inspect: cannot open %s\n", file);
    return 1;
  }
  TInspectX x;
  if (!OpenInspectX(&x, "layout")) {
    std::fclose(input);
    return 1;
  }
  TFmtNode::InitializeTexParser();
  TFmtNode::InitializeDrawProperties();
  TFontFamily::PrepareAllFonts(&x.window);
  TFmtContext_XWin::ResetScaledFeatures();
  CLocalInputFileLoader loader(CLocalInputFileLoader::FileUrlFromPath(file));
  CInputFileLoader::Set_Global(&loader);
  CZrError::Set_ReportParseErrors(kReportAtEnd);

  TFmtDocumentNode document;
  auto root = std::make_unique<TFmtCompoundNode>();
  {
    TTexTokenSource source(loader.Get_CurrentUrl(), input);
    source.Set_DocumentNode(&document);
    source.Set_StopAtMissingFile(1);
    TFmtNode* result = root->ParseTex(source);
    if (result != root.get()) root.reset(TFmtCompoundNode::CompoundIt(result));
    if (source.Get_WaitingForFile()) std::fprintf(stderr, "zephrin-inspect: an included file could not be loaded\n");
  }
  auto body = std::make_unique<TFmtVerticalListNode>(TFmtVerticalListNode::k_RefTop);
  body->Set_IsDocumentBody(1);
  body->Build(root.release());
  document.Set_CompositionStatus(k_ComposeEverything);

  TFmtContext& context = x.context;
  context.Set_DocumentNode(&document);
  for (int width : widths) {
    context.BringToDefaultState();
    context.m_nJustification = 1;
    if (TFontFamily::fg_pRoman) TFontFamily::fg_pRoman->MakeCurrentAndSelect(context);
    context.m_nLeftMargin = 0;
    context.m_nRightMargin = width;
    context.ClearNodePath();
    body->m_Position = CPoint(0, 0);
    body->Compose(context);
    document.Set_CompositionStatus(k_Composed);
    CString out;
    DumpLayout(body.get(), width, out);
    std::fwrite(out.c_str(), 1, static_cast<size_t>(out.GetLength()), stdout);
    document.Set_CompositionStatus(k_WidthChanged);
  }
  context.Set_DocumentNode(nullptr);
  for (CObject* object : CZrError::Get_SavedErrors()) {
    CString text;
    FormatParseError(text, *static_cast<CSavedError*>(object));
    std::fprintf(stderr, "%s\n", text.c_str());
  }
  CZrError::ClearParseErrors();
  CInputFileLoader::Set_Global(nullptr);
  return 0;
}
