// zephrin-inspect: one function per verb, each in a file of its own
// (verb_<name>.cpp), listed once in the table of main.cpp.
#pragma once

// Each verb gets the arguments after its name and returns the exit status.
using InspectVerb = int (*)(int argc, char** argv);

struct InspectVerbEntry {
  const char* name;
  const char* usage;  // arguments, for the help text
  InspectVerb run;
};
