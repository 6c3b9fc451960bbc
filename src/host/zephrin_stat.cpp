#include "host/zephrin_stat.h"

#include <cstdio>
#include <cstdlib>

#include "host/info_wizard.h"
#include "host/resource.h"

namespace {
ZephrinStat theZephrinStat;
}

ZephrinStat* ZephrinStat::GetZephrinStatObject() { return &theZephrinStat; }

void ZephrinStat::Initialize(Widget parent, ShutDownCallback shutDown) {
  m_Parent = parent;
  m_ShutDown = shutDown;
  m_nFontStatus = 7;
}

void ZephrinStat::ErrorMessage(int status, const char* text) {
  const char* words = text ? text : "";
  switch (status) {
    case 8:
      m_nFontStatus = 8;
      BuildFontPathPages();
      ShowWizard(m_FontPathPages, 2);
      break;
    case 9: std::fprintf(stderr, "%s : unable to get current font path\n", words); break;
    case 10: std::fprintf(stderr, "%s : unable to get old font path", words); break;
    case 11: std::fprintf(stderr, "%s : no entries deleted from font path", words); break;
    case 12:
      m_nFontStatus = 12;
      BuildFontPage(words);
      ShowWizard(&m_FontPage, 1);
      break;
    case 14:
      BuildRegistryPage();
      ShowWizard(&m_RegistryPage, 1);
      break;
    case 16: std::fprintf(stderr, "%s : out of memory\n", words); break;
    // The line is written as it has always read, conversion letter and all;
    // the caller's words do not appear in it.
    case 17: std::fputs("General Error : %a\n", stderr); break;
    case 18: std::fprintf(stderr, "%s : internal error\n", words); break;
    default: break;  // the exit code is the only trace
  }
}

void ZephrinStat::ErrorExit(int status, const char* text) {
  ErrorMessage(status, text);
  std::exit(status);
}

void ZephrinStat::BuildFontPathPages() {
  const auto& list = Resource::GetResourceObject()->GetFontPathList();
  CString& one = m_FontPathPages[0];
  one = "Corvane zephrin Document Viewer\n";
  one += "cannot add:\n\n";
  for (const CString& entry : list) one += entry + "\n";
  one += "\nto the X Window font path.\n\n";
  one += "Make sure that all of the directories ";
  one += "defined by the ``Corvane.Fonts.FontPath:'' ";
  one += "resource in the zephrin registry:";
  one += "\n\n$HOME/.zephrin/Cache/registry\n\n";
  one += "can be added to the X Window font path.\n";

  CString& two = m_FontPathPages[1];
  two = "Font directories or font servers can be ";
  two += "manually added to the X Window System by ";
  two += "using the xset program. For example, ";
  two += "using the path currently defined in the ";
  two += "zephrin registry you can ";
  two += "invoke:\n\n";
  for (const CString& entry : list) two += CString("xset fp+ ") + entry + "\n";
  two += "xset fp rehash\n";
  two += "xset -q\n\n";
  two += "to add fonts to the X Window font path. ";
  two += "Consult the readme-zephrin.html for ";
  two += "more information.";
}

void ZephrinStat::BuildFontPage(const char* fontName) {
  m_FontPage = "Corvane zephrin Document Viewer\n";
  m_FontPage += "cannot load the font:\n\n";
  m_FontPage += fontName;
  m_FontPage += "\n\n";
  m_FontPage += "Consult the readme-zephrin.html file ";
  m_FontPage += "to ensure the proper configuration.\n";
}

void ZephrinStat::BuildRegistryPage() {
  m_RegistryPage = "Corvane zephrin Document Viewer\n";
  m_RegistryPage += "cannot access the zephrin registry:\n\n";
  m_RegistryPage += Resource::GetStringResource(60001);
  m_RegistryPage += "\n\n";
  m_RegistryPage += "Consult the readme-zephrin.html file ";
  m_RegistryPage += "to ensure the proper configuration.\n";
}

void ZephrinStat::ShowWizard(const CString* pages, int count) {
  // Before the splash shell exists there is nothing to hang a window on.
  if (!m_Parent) return;
  CInfoWizard wizard(m_Parent, 400, 300, kWizardTitle, pages, count, m_ShutDown);
  wizard.DoModal();
}
