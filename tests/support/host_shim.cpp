#include "support/host_shim.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "support/paths.h"

namespace ztest {
namespace {
int StatusCode(int status) {
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
  return -1;
}

struct TScratch {
  std::vector<std::string> dirs;
  ~TScratch() {
    for (const std::string& dir : dirs) {
      std::error_code ignored;
      std::filesystem::remove_all(dir, ignored);
    }
  }
};

std::string Substitute(std::string text, const std::string& key, const std::string& value) {
  for (size_t at; (at = text.find(key)) != std::string::npos;) text.replace(at, key.size(), value);
  return text;
}
}  // namespace

std::string ScratchDir(const std::string& tag) {
  static TScratch scratch;
  std::string dir = MakeTempDir(tag);
  if (!dir.empty()) scratch.dirs.push_back(dir);
  return dir;
}

HostShim::HostShim() {
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  m_Dir = MakeTempDir("shim");
  m_nListen = socket(AF_INET, SOCK_STREAM, 0);
  int on = 1;
  setsockopt(m_nListen, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_ANY);
  bind(m_nListen, reinterpret_cast<sockaddr*>(&address), sizeof address);
  socklen_t length = sizeof address;
  getsockname(m_nListen, reinterpret_cast<sockaddr*>(&address), &length);
  m_nPort = ntohs(address.sin_port);
  listen(m_nListen, 4);
}

HostShim::~HostShim() {
  KillHost();
  if (m_ShimPid > 0 && !m_bParentKilled) {
    kill(m_ShimPid, SIGKILL);
    waitpid(m_ShimPid, nullptr, 0);
  }
  if (m_nListen >= 0) close(m_nListen);
  std::error_code ignored;
  if (!m_Dir.empty()) std::filesystem::remove_all(m_Dir, ignored);
}

bool HostShim::Start(const std::vector<std::string>& args, const std::string& program) {
  std::string path = program.empty() ? BuildPath("zephrin") : program;
  std::string errPath = m_Dir + "/stderr";
  int pidPipe[2];
  if (pipe(pidPipe) != 0) return false;
  m_ShimPid = fork();
  if (m_ShimPid < 0) return false;
  if (m_ShimPid == 0) {
    // The shim: starts the host, tells the test its id, and ends with the
    // host's code.
    close(pidPipe[0]);
    std::string self = std::to_string(getpid());
    std::vector<std::string> argv{path};
    for (const std::string& a : args)
      argv.push_back(Substitute(Substitute(a, "{ppid}", self), "{port}", std::to_string(m_nPort)));
    pid_t host = fork();
    if (host == 0) {
      close(pidPipe[1]);
      close(m_nListen);
      for (const auto& [name, value] : m_Env) {
        if (value)
          setenv(name.c_str(), value->c_str(), 1);
        else
          unsetenv(name.c_str());
      }
      int err = open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
      if (err >= 0) dup2(err, 2);
      std::vector<char*> raw;
      for (std::string& a : argv) raw.push_back(a.data());
      raw.push_back(nullptr);
      execv(path.c_str(), raw.data());
      _exit(127);
    }
    ssize_t written = write(pidPipe[1], &host, sizeof host);
    (void)written;
    close(pidPipe[1]);
    int status = 0;
    waitpid(host, &status, 0);
    _exit(StatusCode(status));
  }
  close(pidPipe[1]);
  pid_t host = -1;
  ssize_t got = read(pidPipe[0], &host, sizeof host);
  close(pidPipe[0]);
  m_HostPid = got == sizeof host ? host : -1;
  return m_HostPid > 0;
}

bool HostShim::ReadReport(std::string* bytes, int timeoutMs) {
  pollfd p{m_nListen, POLLIN, 0};
  if (poll(&p, 1, timeoutMs) <= 0) return false;
  int fd = accept(m_nListen, nullptr, nullptr);
  if (fd < 0) return false;
  bytes->clear();
  char buffer[64];
  // Read until the host closes (it writes one record and closes) or 64 bytes.
  while (bytes->size() < sizeof buffer) {
    pollfd q{fd, POLLIN, 0};
    if (poll(&q, 1, timeoutMs) <= 0) break;
    ssize_t n = read(fd, buffer, sizeof buffer - bytes->size());
    if (n <= 0) break;
    bytes->append(buffer, static_cast<size_t>(n));
  }
  close(fd);
  return true;
}

HostReport HostShim::Decode(const std::string& bytes) {
  HostReport report{};
  std::memcpy(&report, bytes.data(), bytes.size() < sizeof report ? bytes.size() : sizeof report);
  return report;
}

int HostShim::WaitExit(int timeoutMs) {
  if (m_nExit >= 0) return m_nExit;
  pid_t target = m_bParentKilled ? m_HostPid : m_ShimPid;
  auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  for (;;) {
    int status = 0;
    pid_t done = waitpid(target, &status, WNOHANG);
    if (done == target) {
      m_nExit = StatusCode(status);
      if (!m_bParentKilled) m_ShimPid = -1;
      m_HostPid = -1;
      return m_nExit;
    }
    if (done < 0 || std::chrono::steady_clock::now() >= end) return -1;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

void HostShim::KillParent() {
  if (m_ShimPid <= 0) return;
  kill(m_ShimPid, SIGKILL);
  waitpid(m_ShimPid, nullptr, 0);
  m_ShimPid = -1;
  m_bParentKilled = true;
}

void HostShim::KillHost() {
  if (m_HostPid <= 0 || m_nExit >= 0) return;
  kill(m_HostPid, SIGKILL);
  WaitExit(5000);
}

std::string HostShim::Stderr() const {
  std::ifstream in(m_Dir + "/stderr");
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}
}  // namespace ztest
