// A small stand-in for the browser plug-in shim: it listens on a control
// port, starts `zephrin` as the child of a shim process of its own, and reads
// the start-up report. The test process becomes a child subreaper, so that a
// host whose shim was killed comes back to it and its exit can be seen.
#pragma once

#include <netinet/in.h>
#include <sys/types.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace ztest {

// The 36-byte start-up report, as it travels (machine byte order).
struct HostReport {
  uint32_t type;
  uint32_t length;
  sockaddr_in address;
  uint32_t zero;
  uint32_t ready;
  uint32_t sentinel;
};
static_assert(sizeof(HostReport) == 36);

// A fresh directory under the system's temporary one, removed when the test
// program ends (the shim's child processes leave with _exit and never do).
std::string ScratchDir(const std::string& tag);

class HostShim {
 public:
  HostShim();
  ~HostShim();
  HostShim(const HostShim&) = delete;
  HostShim& operator=(const HostShim&) = delete;

  int Port() const { return m_nPort; }
  // Environment of the host: a value, or std::nullopt to remove the name.
  void SetEnv(const std::string& name, std::optional<std::string> value) { m_Env[name] = std::move(value); }

  // Starts the host. In `args`, "{ppid}" stands for the shim's process id and
  // "{port}" for the control port; by default they are "{ppid} {port} shim".
  bool Start(const std::vector<std::string>& args = {"{ppid}", "{port}", "shim"},
             const std::string& program = "");
  // Accepts one connection on the control port and reads what it carries,
  // up to 64 bytes. False when nothing arrives within the time.
  bool ReadReport(std::string* bytes, int timeoutMs = 10000);
  static HostReport Decode(const std::string& bytes);

  // The host's exit: its code (128 + signal for a signal), or -1 while it is
  // still running after `timeoutMs`.
  int WaitExit(int timeoutMs);
  // Kills the shim process (the host's parent) and keeps the host.
  void KillParent();
  // Ends the host (SIGKILL) if it still runs.
  void KillHost();
  pid_t HostPid() const { return m_HostPid; }
  pid_t ShimPid() const { return m_ShimPid; }
  // What the host wrote to standard error.
  std::string Stderr() const;

 private:
  int m_nListen = -1;
  int m_nPort = 0;
  std::string m_Dir;
  std::map<std::string, std::optional<std::string>> m_Env;
  pid_t m_ShimPid = -1;
  pid_t m_HostPid = -1;
  bool m_bParentKilled = false;
  int m_nExit = -1;
};

}  // namespace ztest
