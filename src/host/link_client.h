// The client's half of the link's sockets, shared by the standalone viewer
// and the test shim: a listening port of its own, and one record read from
// each connection the host opens to it.
#pragma once

#include <string>

namespace zlink {
// A socket listening on a port the system picks; -1 on failure.
int OpenListener(int* port);
// Accepts one connection within timeoutMs and reads what it carries until
// the host closes it (at most 64 KiB; a stall of 5 s ends it). Empty when
// no connection comes.
std::string AcceptRecord(int listenFd, int timeoutMs);
}  // namespace zlink
