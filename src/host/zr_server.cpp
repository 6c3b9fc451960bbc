#include "host/zr_server.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "host/resource.h"
#include "host/zephrin_stat.h"

void ZRServer::SetEnv(int parentId, int port) {
  m_nParentId = parentId;
  // The shim passes its port as a plain number; the address wants it in
  // network order.
  m_ClientControlAddress.sin_port = htons(static_cast<uint16_t>(port));
  m_pHome = std::getenv("HOME");
  if (!m_pHome)
    ZephrinStat::GetZephrinStatObject()->ErrorExit(17, "ZRServer::SetEnv : can not get home directory");
  m_pZRHome = std::getenv("ZEPHRIN_HOME");
  // Over-long directories are cut at the buffer's size; the paths made from
  // them then simply name nothing.
  if (m_pZRHome)
    std::snprintf(m_szZRHomeDir, sizeof m_szZRHomeDir, "%s", m_pZRHome);
  else
    std::snprintf(m_szZRHomeDir, sizeof m_szZRHomeDir, "%s/.zephrin", m_pHome);
  std::snprintf(m_szUserHomeDir, sizeof m_szUserHomeDir, "%s/.zephrin", m_pHome);
}

void ZRServer::SetGUI(XtAppContext* appContext, Widget topLevel, Display* display, int screen, Visual* visual,
                      int depth, int colorCount, int zero, Colormap colormap) {
  m_pAppContext = appContext;
  m_TopLevel = topLevel;
  m_pDisplay = display;
  m_nScreen = screen;
  m_pVisual = visual;
  m_nDepth = depth;
  m_nColors = colorCount;
  m_nZero = zero;
  m_Colormap = colormap;
}

int ZRServer::CheckFontAvailability() {
  Resource* resource = Resource::GetResourceObject();
  for (unsigned id = 80000; id <= 80010; ++id) {
    XFontStruct* font = XLoadQueryFont(m_pDisplay, resource->GetFontStringResource(id));
    if (!font) return 0;
    XFreeFont(m_pDisplay, font);
  }
  return 1;
}

int ZRServer::LoadFonts() {
  int status = 7;
  if (CheckFontAvailability()) return status;
  Resource* resource = Resource::GetResourceObject();
  char rehash[] = "rehash";
  char reset[] = "default";
  for (const CString& entry : resource->GetFontPathList()) {
    // SetFontPath cuts its argument at the commas in place.
    std::vector<char> path(entry.c_str(), entry.c_str() + entry.GetLength() + 1);
    status = resource->SetFontPath(path.data(), 0, 0, 1);
    if (status != 7) break;
    resource->SetFontPath(rehash, 1, 0, 0);
    if (resource->GetXError() == 51) {
      status = 8;
      resource->SetXError(0);
      break;
    }
  }
  // An accepted path counts as good: a font still missing is reported when
  // it is first used.
  if (status == 7) return status;
  resource->SetFontPath(reset, 1, 0, 0);
  resource->SetFontPath(rehash, 1, 0, 0);
  return status;
}

int ZRServer::XErrorHandler(Display* display, XErrorEvent* event) {
  char text[80];
  XGetErrorText(display, event->error_code, text, sizeof text);
  if (event->request_code == 51)  // X_SetFontPath
    Resource::GetResourceObject()->SetXError(51);
  return 1;
}

void ZRServer::InitComplete(int ok) {
  ZephrinStat* stat = ZephrinStat::GetZephrinStatObject();
  int fd = socket(AF_INET, SOCK_STREAM, 0);
  if (fd < 0) stat->ErrorExit(1, "ZRServer::InitComplete : building tcp socket");
  int on = 1;
  setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (connect(fd, reinterpret_cast<sockaddr*>(&m_ClientControlAddress), sizeof m_ClientControlAddress) < 0)
    stat->ErrorExit(4, "ZRServer::InitComplete : connecting to client");
  TInitCompleteMessage message{};
  message.type = kInitCompleteType;
  message.length = sizeof message;
  message.address = m_ListenAddress;
  message.zero = 0;
  message.ready = ok ? 1 : 0;
  message.sentinel = kInitCompleteType;
  const char* p = reinterpret_cast<const char*>(&message);
  size_t left = sizeof message;
  while (left > 0) {
    ssize_t n = write(fd, p, left);
    if (n <= 0) break;
    p += n;
    left -= static_cast<size_t>(n);
  }
  close(fd);
}

void ZRServer::OnTimeOutHelper(XtPointer client, XtIntervalId*) {
  ZRServer* server = static_cast<ZRServer*>(client);
  // No message ends the process: it ends when its parent has gone.
  if (getppid() != server->m_nParentId) std::exit(0);
  // The link's records are taken here, one per tick: accept, read, dispatch.
  Resource::GetResourceObject()->StartAppTimer();
}
