// The test shim's link half: it starts the host through HostShim with a
// working installation, listens on a data and a control port of its own,
// and sends and receives the link's records as raw bytes.
#pragma once

#include <netinet/in.h>

#include <cstdint>
#include <string>

#include "host/link_records.h"
#include "support/host_shim.h"

namespace ztest {

class LinkShim {
 public:
  LinkShim();
  ~LinkShim();
  LinkShim(const LinkShim&) = delete;
  LinkShim& operator=(const LinkShim&) = delete;

  // Starts the host with the staged installation and an empty profile store
  // and reads its report; false when it is not ready.
  // registry: the profile store's text at start (empty by default).
  bool Start(const std::string& registry = "");
  HostShim& Host() { return m_Host; }
  const std::string& Home() const { return m_Home; }

  // One record on its own connection to the host; false when the host does
  // not accept it.
  bool Send(const std::string& bytes);
  // Connects and closes without writing.
  bool SendNothing();

  static std::string New(int32_t id, const std::string& inlineTex = "", const std::string& inlineMml = "",
                         const std::string& inlineName = "", const std::string& mime = "application/x-zephrin");
  // With this shim's two addresses in place.
  std::string NewHere(int32_t id, const std::string& inlineTex = "") const;
  static std::string SetWindow(int32_t id, unsigned long window, int width, int height);
  static std::string Resize(int32_t id, int width, int height);
  static std::string StreamAsFile(int32_t id, const std::string& url, const std::string& local);
  static std::string Header(uint32_t type, int32_t id, uint32_t length = 12);
  static std::string Reload(int32_t id, const std::string& tex);

  // The next record on the data port (URL requests, status texts), or empty
  // after timeoutMs.
  std::string ReadData(int timeoutMs = 10000);
  // The next status text; empty after timeoutMs.
  std::string ReadStatus(int timeoutMs = 10000);
  // The next record on the control port (document text replies).
  std::string ReadControl(int timeoutMs = 10000);

  int DataPort() const { return m_nDataPort; }
  int ControlPort() const { return m_nControlPort; }

 private:
  HostShim m_Host;
  std::string m_Home;
  sockaddr_in m_HostAddress{};
  int m_nData = -1, m_nDataPort = 0;
  int m_nControl = -1, m_nControlPort = 0;
};

// The text of a status or document text record (up to its zero).
std::string RecordText(const std::string& record);

}  // namespace ztest
