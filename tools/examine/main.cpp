// zephrin-inspect: a developer's view of each stage of the pipeline, without
// a window where that is possible.
#include <cstdio>
#include <cstring>
#include <iterator>

#include "framework/objects.h"
#include "host/zephrin_stat.h"
#include "verbs.h"

// Verbs are declared here and defined in verb_<name>.cpp.
int InspectVerb_colors(int argc, char** argv);
int InspectVerb_draw(int argc, char** argv);
int InspectVerb_fontchart(int argc, char** argv);
int InspectVerb_fontname(int argc, char** argv);
int InspectVerb_layout(int argc, char** argv);
int InspectVerb_metrics(int argc, char** argv);
int InspectVerb_props(int argc, char** argv);
int InspectVerb_relsize(int argc, char** argv);
int InspectVerb_stretch(int argc, char** argv);
int InspectVerb_tex(int argc, char** argv);
int InspectVerb_tokens(int argc, char** argv);
int InspectVerb_tree(int argc, char** argv);

namespace {
const InspectVerbEntry fg_Verbs[] = {
    // name        usage                       function
    {"colors", "[R G B [NAME]]", InspectVerb_colors},
    {"draw", "[--no-window] [--screen PWxPH/MWxMH] SCRIPT", InspectVerb_draw},
    {"fontchart", "FONTNAME OUT.png", InspectVerb_fontchart},
    {"fontname", "TEMPLATE DECIPOINTS XRES YRES", InspectVerb_fontname},
    {"layout", "FILE --width W [--width W...]", InspectVerb_layout},
    {"metrics", "TAG SIZE CODE... | editbox", InspectVerb_metrics},
    {"props", "NAME", InspectVerb_props},
    {"relsize", "SIZE BASE", InspectVerb_relsize},
    {"stretch", "TAG CODE [HEIGHT DEPTH EXTRA]...", InspectVerb_stretch},
    {"tex", "FILE", InspectVerb_tex},
    {"tokens", "FILE [--expand]", InspectVerb_tokens},
    {"tree", "FILE", InspectVerb_tree},
    {nullptr, nullptr, nullptr},
};

int Usage() {
  std::fprintf(stderr, "usage: zephrin-inspect VERB ARGS...\n");
  for (const auto& verb : fg_Verbs)
    if (verb.name) std::fprintf(stderr, "  %s %s\n", verb.name, verb.usage);
  return 2;
}
}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return Usage();
  for (const auto& verb : fg_Verbs)
    if (verb.name && std::strcmp(verb.name, argv[1]) == 0) {
      try {
        return verb.run(argc - 2, argv + 2);
      } catch (const CFontException&) {
        // A font the server refused: the page the user would have seen.
        std::fputs(ZephrinStat::GetZephrinStatObject()->GetFontPage().c_str(), stderr);
        return ZephrinStat::k_FontNotLoaded;
      }
    }
  std::fprintf(stderr, "zephrin-inspect: unknown verb '%s'\n", argv[1]);
  return Usage();
}
