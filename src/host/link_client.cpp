#include "host/link_client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace zlink {
int OpenListener(int* port) {
  int fd = socket(AF_INET, SOCK_STREAM, 0);
  if (fd < 0) return -1;
  int on = 1;
  setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_ANY);
  // The host opens a connection for each record: a burst must not be refused.
  if (bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) < 0 || listen(fd, 1024) < 0) {
    close(fd);
    return -1;
  }
  socklen_t length = sizeof address;
  getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
  *port = ntohs(address.sin_port);
  return fd;
}

std::string AcceptRecord(int listenFd, int timeoutMs) {
  pollfd p{listenFd, POLLIN, 0};
  if (poll(&p, 1, timeoutMs) <= 0) return {};
  int fd = accept(listenFd, nullptr, nullptr);
  if (fd < 0) return {};
  std::string bytes;
  char buffer[4096];
  for (;;) {
    pollfd q{fd, POLLIN, 0};
    if (poll(&q, 1, 5000) <= 0) break;
    ssize_t n = read(fd, buffer, sizeof buffer);
    if (n <= 0) break;
    bytes.append(buffer, static_cast<size_t>(n));
    if (bytes.size() > 65536) break;
  }
  close(fd);
  return bytes;
}
}  // namespace zlink
