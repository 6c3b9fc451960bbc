#include "host/ns_server.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "host/zephrin_stat.h"

void NSServer::InitializeNetwork() {
  ZephrinStat* stat = ZephrinStat::GetZephrinStatObject();
  m_nPid = getpid();

  utsname names{};
  uname(&names);
  std::strncpy(m_szHostName, names.nodename, sizeof m_szHostName - 1);
  // The shim runs on this machine. A node name that does not resolve would
  // leave no address at all; the loopback address is the same machine.
  m_nHostAddress = htonl(INADDR_LOOPBACK);
  if (hostent* host = gethostbyname(m_szHostName);
      host && host->h_addrtype == AF_INET && host->h_addr_list && host->h_addr_list[0])
    std::memcpy(&m_nHostAddress, host->h_addr_list[0], sizeof m_nHostAddress);
  m_ClientControlAddress.sin_family = AF_INET;
  m_ClientControlAddress.sin_addr.s_addr = m_nHostAddress;

  m_nListenSocket = socket(AF_INET, SOCK_STREAM, 0);
  if (m_nListenSocket < 0) stat->ErrorExit(1, "NSServer::InitializeNetwork : building tcp socket");
  int on = 1;
  setsockopt(m_nListenSocket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);

  std::memset(&m_ListenAddress, 0, sizeof m_ListenAddress);
  m_ListenAddress.sin_family = AF_INET;
  m_ListenAddress.sin_addr.s_addr = m_nHostAddress;
  m_ListenAddress.sin_port = 0;
  if (bind(m_nListenSocket, reinterpret_cast<sockaddr*>(&m_ListenAddress), sizeof m_ListenAddress) < 0)
    stat->ErrorExit(2, "NSServer::InitializeNetwork : binding stream socket");
  socklen_t length = sizeof m_ListenAddress;
  if (getsockname(m_nListenSocket, reinterpret_cast<sockaddr*>(&m_ListenAddress), &length) < 0)
    stat->ErrorExit(3, "NSServer::InitializeNetwork : getting socket name");
  listen(m_nListenSocket, kBacklog);
}

namespace {
// The shim is trusted to send whole records; one that stalls mid-record
// must not hold the only thread for ever.
constexpr int kReadTimeoutSeconds = 5;

void WriteAll(int fd, const char* p, size_t left) {
  while (left > 0) {
    ssize_t n = write(fd, p, left);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return;
    p += n;
    left -= static_cast<size_t>(n);
  }
}
}  // namespace

int NSServer::Read(int descriptor, char* buffer, int capacity) {
  ZephrinStat* stat = ZephrinStat::GetZephrinStatObject();
  timeval limit{kReadTimeoutSeconds, 0};
  setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
  ssize_t got = read(descriptor, buffer, static_cast<size_t>(capacity));
  if (got == 0) return 0;
  if (got < 9) stat->ErrorExit(5, "NSServer::Read : less than 8 bytes received");
  uint32_t total;
  std::memcpy(&total, buffer + 4, sizeof total);
  if (total > static_cast<uint32_t>(capacity))
    stat->ErrorExit(5, "NSServer::Read : record longer than the buffer");
  while (got < static_cast<ssize_t>(total)) {
    ssize_t n = read(descriptor, buffer + got, total - static_cast<size_t>(got));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) stat->ErrorExit(5, "NSServer::Read : record ended before its length");
    got += n;
  }
  return static_cast<int>(total);
}

int NSServer::Write(const char* record, int length) {
  m_ClientDataAddress.sin_family = AF_INET;
  int fd = socket(AF_INET, SOCK_STREAM, 0);
  if (fd < 0) ZephrinStat::GetZephrinStatObject()->ErrorExit(1, "ZRServer::Write : opening stream socket to client");
  char on = 1;
  setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (connect(fd, reinterpret_cast<sockaddr*>(&m_ClientDataAddress), sizeof m_ClientDataAddress) == 0)
    WriteAll(fd, record, static_cast<size_t>(length));
  else
    ZephrinStat::GetZephrinStatObject()->ErrorMessage(4, "ZRServer::Write : connecting to client");
  close(fd);
  return length;
}
