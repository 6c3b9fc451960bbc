// NSServer: the socket side of the host process and its two directories.
#pragma once

#include <netinet/in.h>
#include <sys/types.h>

class NSServer {
 public:
  static constexpr int kHostNameSize = 68;
  static constexpr int kPathSize = 1024;
  static constexpr int kUserAgentSize = 1000;
  static constexpr int kBacklog = 600;

  // Host name and address, then the listening socket on a port the system
  // picks. A socket that cannot be made, bound or named ends the process
  // with status 1, 2 or 3.
  void InitializeNetwork();

  // Reads one record: 0 when the peer closed at once. A record under 9
  // bytes, one whose declared length exceeds capacity, and a peer that stops
  // before its declared length (or stalls for seconds) end the process with
  // status 5.
  int Read(int descriptor, char* buffer, int capacity);
  // Sends one record to the data address. A refused connection loses the
  // record; the process goes on.
  int Write(const char* record, int length);

  const char* GetZRHomeDir() const { return m_szZRHomeDir; }
  const char* GetUserHomeDir() const { return m_szUserHomeDir; }
  int GetListenSocket() const { return m_nListenSocket; }
  const sockaddr_in& GetListenAddress() const { return m_ListenAddress; }
  const sockaddr_in& GetControlAddress() const { return m_ClientControlAddress; }
  const sockaddr_in& GetDataAddress() const { return m_ClientDataAddress; }
  int GetParentId() const { return m_nParentId; }

 protected:
  int32_t m_nParentId = 0;
  int32_t m_nPid = 0;
  char m_szHostName[kHostNameSize] = {};
  uint32_t m_nHostAddress = 0;  // network order
  int32_t m_nListenSocket = -1;
  sockaddr_in m_ListenAddress = {};
  sockaddr_in m_ClientDataAddress = {};
  sockaddr_in m_ClientControlAddress = {};
  const char* m_pHome = nullptr;        // borrowed from the environment
  const char* m_pZRHome = nullptr;      // borrowed from the environment, or null
  char m_szZRHomeDir[kPathSize] = {};   // the installation directory
  char m_szUserHomeDir[kPathSize] = {}; // always $HOME/.zephrin
  char m_szUserAgent[kUserAgentSize] = {};
};
