// The host process's main and its shut-down.
#pragma once

// Runs the start-up and the main loop; returns only by exit.
int ZephrinMain(int argc, char** argv);
// The end of the process after a failed start: the wizards' close.
[[noreturn]] void ShutDown();
