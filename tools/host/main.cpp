// zephrin PARENT_PID PORT ARG3: the host process.
#include "host/zephrin_main.h"

int main(int argc, char** argv) { return ZephrinMain(argc, argv); }
