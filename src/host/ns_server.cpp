#include "host/ns_server.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <sys/socket.h>
#include <sys/utsname.h>
#include <unistd.h>

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
