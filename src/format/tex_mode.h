// The mode of what is being composed or drawn, and the print margin shared by
// the TeX printers.
#pragma once

// 3 text (in a table), 4 inline math, 5 display math. Math nodes set it for
// the time of their Compose and Draw and put the old value back.
inline int g_CurrentTexMode = 3;

// A sequence printed past this column starts a new line, so that printed
// documents keep lines of a readable length.
inline int g_PrintTexRightMargin = 72;
