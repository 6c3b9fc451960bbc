#include "framework/profile_keys.h"

namespace {
using K = KProfileKind;
constexpr const char* kContext = "TFmtContext_XWin";
}  // namespace

const char* const fg_ColorStateNames[6] = {"Standard", "Selection", "StandardMath",
                                           "EditBox",  "Highlight", "ActiveMath"};

const TProfileKey fg_ProfileKeys[] = {
    {"Settings", "ReportParseErrors", K::k_Int, "0", "CZrError"},
    {"Settings", "ExecutionPermission", K::k_Int, "1", "TFmtApplicationLinkNode"},
    {"Settings", "SaveTemporaryDocuments", K::k_Flag, "0", "TFmtDocumentNode"},
    {"Settings", "CenterMathDisplays", K::k_Flag, nullptr, kContext},
    {"Fonts", "FontPath", K::k_List, nullptr, "Resource"},
    {"Fonts", "MathName", K::k_String, nullptr, kContext},
    {"Fonts", "MathSize", K::k_Int, nullptr, kContext},
    {"Fonts", "TextName", K::k_String, nullptr, kContext},
    {"Fonts", "TextSize", K::k_Int, nullptr, kContext},
    {"Fonts", "SansSerifName", K::k_String, nullptr, kContext},
    {"Fonts", "SansSerifSize", K::k_Int, nullptr, kContext},
    {"Fonts", "MonospaceName", K::k_String, nullptr, kContext},
    {"Fonts", "MonospaceSize", K::k_Int, nullptr, kContext},
    {"Fonts", "MathIt", K::k_String, nullptr, kContext},
    {"Fonts", "RmBld", K::k_String, nullptr, kContext},
    {"Fonts", "RmIt", K::k_String, nullptr, kContext},
    {"Fonts", "MathExt0", K::k_String, nullptr, kContext},
    {"Fonts", "MathExt1", K::k_String, nullptr, kContext},
    {"Fonts", "MathExt2", K::k_String, nullptr, kContext},
    {"Fonts", "MathExt3", K::k_String, nullptr, kContext},
    {"Fonts", "MathExt4", K::k_String, nullptr, kContext},
    {"Colors", "ColorizeExpressions", K::k_Flag, nullptr, kContext},
    {"Colors", "BackgroundColor0", K::k_Color, nullptr, kContext},
    {"Colors", "BackgroundColor1", K::k_Color, nullptr, kContext},
    {"Colors", "BackgroundColor2", K::k_Color, nullptr, kContext},
    {"Colors", "BackgroundColor3", K::k_Color, nullptr, kContext},
    {"Colors", "BackgroundColor4", K::k_Color, nullptr, kContext},
    {"Colors", "BackgroundColor5", K::k_Color, nullptr, kContext},
    {"Colors", "ForegroundColor0", K::k_Color, nullptr, kContext},
    {"Colors", "ForegroundColor1", K::k_Color, nullptr, kContext},
    {"Colors", "ForegroundColor2", K::k_Color, nullptr, kContext},
    {"Colors", "ForegroundColor3", K::k_Color, nullptr, kContext},
    {"Colors", "ForegroundColor4", K::k_Color, nullptr, kContext},
    {"Colors", "ForegroundColor5", K::k_Color, nullptr, kContext},
    {"Colors", "Links", K::k_Color, "0 0 255", kContext},
    {"Colors", "LiveLink", K::k_Color, "255 0 0", kContext},
    {"Colors", "BinaryOps", K::k_Color, "0 0 255", kContext},
    {"Colors", "Delimiters", K::k_Color, "0 0 0", kContext},
    {"Colors", "Lines", K::k_Color, "0 0 0", kContext},
    {"Colors", "LoglikeFunctions", K::k_Color, "255 0 0", kContext},
    {"Colors", "Numbers", K::k_Color, "0 128 128", kContext},
    {"Colors", "Relations", K::k_Color, "0 128 0", kContext},
    {"Bookmark", "URL", K::k_String, "", "CNpZephrinApp"},
    {"Bookmark", "label", K::k_String, "", "CNpZephrinApp"},
};

const int fg_nProfileKeys = static_cast<int>(sizeof fg_ProfileKeys / sizeof fg_ProfileKeys[0]);
