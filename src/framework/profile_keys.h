// Every key of the profile store with its kind, its default and its owner.
// Each owner reads and writes its own keys (ReadRegistryValues and
// SaveRegistryValues); this table is the one list of them.
#pragma once

enum class KProfileKind {
  k_Int,     // a decimal number, read through atoi
  k_Flag,    // an int stored as 0 or 1
  k_String,
  k_List,    // comma-separated, spaces kept
  k_Color,   // "red green blue", three decimal numbers 0..255
};

struct TProfileKey {
  const char* section;
  const char* entry;
  KProfileKind kind;
  // The default as text; null where it is the owner's current value (the
  // context's fonts and flags, the current font path) or where there is none.
  const char* fallback;
  const char* owner;
};

extern const TProfileKey fg_ProfileKeys[];
extern const int fg_nProfileKeys;

// The six colour states, in index order: "<name>Background" and
// "<name>Foreground" are the older, read-only spellings of
// "BackgroundColor<i>" and "ForegroundColor<i>".
extern const char* const fg_ColorStateNames[6];
