// zephrin-shim: starts the host by hand the way the browser plug-in would,
// prints its start-up report, and ends it by ending its parent.
//
//   zephrin-shim [HOST_PROGRAM]
//
// The host's environment is this one: HOME, ZEPHRIN_HOME and DISPLAY.
#include <arpa/inet.h>

#include <cstdio>
#include <string>

#include "support/host_shim.h"
#include "support/paths.h"

int main(int argc, char** argv) {
  std::string program = argc > 1 ? argv[1] : ztest::BuildPath("zephrin");
  ztest::HostShim shim;
  std::printf("control port %d; starting %s\n", shim.Port(), program.c_str());
  if (!shim.Start({"{ppid}", "{port}", "shim"}, program)) {
    std::fprintf(stderr, "zephrin-shim: cannot start %s\n", program.c_str());
    return 1;
  }
  std::string bytes;
  if (!shim.ReadReport(&bytes, 30000)) {
    int code = shim.WaitExit(1000);
    std::fprintf(stderr, "zephrin-shim: no start-up report (host exit %d)\n%s", code, shim.Stderr().c_str());
    return 1;
  }
  ztest::HostReport r = ztest::HostShim::Decode(bytes);
  char address[INET_ADDRSTRLEN] = "?";
  inet_ntop(AF_INET, &r.address.sin_addr, address, sizeof address);
  std::printf("report: %zu bytes, type %u, length %u, listening on %s:%u, ready %u, sentinel %u\n", bytes.size(),
              r.type, r.length, address, ntohs(r.address.sin_port), r.ready, r.sentinel);
  std::printf("host pid %d runs; press Enter to end its parent\n", static_cast<int>(shim.HostPid()));
  std::fflush(stdout);
  while (std::getchar() != '\n' && !std::feof(stdin)) {
  }
  shim.KillParent();
  int code = shim.WaitExit(3000);
  if (code < 0) {
    std::printf("the host still runs (a failed start waits for its wizard); ending it\n");
    shim.KillHost();
  } else {
    std::printf("host ended with status %d\n", code);
  }
  return 0;
}
