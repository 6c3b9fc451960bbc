#include "host/zr_server.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <Xm/DrawingA.h>
#include <Xm/MainW.h>
#include <Xm/Xm.h>
#include <X11/IntrinsicP.h>
#include <X11/Shell.h>
#include <sys/select.h>

#include "format/context.h"
#include "format/document_node.h"
#include "framework/url.h"
#include "framework/util.h"
#include "host/np_doc.h"
#include "host/np_view.h"
#include "host/np_zephrin_app.h"
#include "host/resource.h"
#include "host/scroll_keys.h"
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

namespace {
// A text field of the peer's record: at most its size, zero or not.
CString Field(const char* field, size_t size) { return CString(field, strnlen(field, size)); }

// Copies text into a field of the given size, always leaving a zero.
void PutField(char* field, size_t size, const char* text) {
  std::memset(field, 0, size);
  if (text) std::strncpy(field, text, size - 1);
}

void Renew() { Resource::GetResourceObject()->StartAppTimer(); }

// The widgets of a view go with its shell; the main window, reparented out
// of the shell's tree, is destroyed by itself so that no orphan stays in the
// browser's window.
void DestroyViewWidgets(CZephrinPlugInView* view) {
  if (!view || !view->m_Shell) return;
  if (view->m_MainWidget && XtIsRealized(view->m_MainWidget) && view->m_pDisplay)
    XDestroyWindow(view->m_pDisplay, XtWindow(view->m_MainWidget));
  XtDestroyWidget(view->m_Shell);
  view->m_Shell = view->m_MainWidget = view->m_DrawWidget = nullptr;
  view->m_VScroll = view->m_HScroll = nullptr;
  view->m_DrawWindow = 0;
  if (view->m_GC) {
    XFreeGC(view->m_pDisplay, view->m_GC);
    view->m_GC = nullptr;
  }
}
}  // namespace

void ZRServer::OnTimeOutHelper(XtPointer client, XtIntervalId*) {
  ZRServer* server = static_cast<ZRServer*>(client);
  ZephrinStat* stat = ZephrinStat::GetZephrinStatObject();
  // No message ends the process: it ends when its parent has gone.
  if (getppid() != server->m_nParentId) std::exit(0);
  errno = 0;
  // Asserted again on every tick, as the backlog that bursts wait in.
  listen(server->m_nListenSocket, kBacklog);
  fd_set readable;
  FD_ZERO(&readable);
  FD_SET(server->m_nListenSocket, &readable);
  timeval now{0, 0};
  if (select(server->m_nListenSocket + 1, &readable, nullptr, nullptr, &now) < 1) {
    // An idle tick deletes a slice of a replaced document's tree.
    TFmtDocumentNode::PartiallyDeleteDocumentStorage();
    Renew();
    return;
  }
  int fd = accept(server->m_nListenSocket, nullptr, nullptr);
  if (fd <= 0) return;  // the ticks stop here, as designed
  char buffer[zlink::kReadCapacity];
  int length = server->Read(fd, buffer, sizeof buffer);
  if (length == 0) stat->ErrorExit(5, "ZRServer::OnTimeOutHelper : reading stream message");
  close(fd);
  server->Dispatch(buffer, length);
}

void ZRServer::Dispatch(const char* record, int length) {
  ZephrinStat* stat = ZephrinStat::GetZephrinStatObject();
  uint32_t type;
  std::memcpy(&type, record, sizeof type);
  uint32_t minimum = zlink::MinimumLength(type);
  if (minimum == 0) stat->ErrorExit(6, "ZRServer::OnTimeOutHelper : invalid message");
  if (static_cast<uint32_t>(length) < minimum) stat->ErrorExit(5, "ZRServer::OnTimeOutHelper : record too short");
  ++m_nRecords;
  // Records are laid out for the buffer's alignment only by chance: copy.
  switch (type) {
    case zlink::kNew: {
      auto* message = new zlink::TNewMessage;
      std::memcpy(message, record, sizeof *message);
      New(message);
      delete message;
      break;
    }
    case zlink::kDestroy:
    case zlink::kGetDocument: {
      zlink::THeader header;
      std::memcpy(&header, record, sizeof header);
      if (type == zlink::kDestroy)
        Destroy(&header);
      else
        GetDocument(&header);
      break;
    }
    case zlink::kSetWindow: {
      zlink::TSetWindowMessage message;
      std::memcpy(&message, record, sizeof message);
      SetWindow(&message);
      break;
    }
    case zlink::kResize: {
      zlink::TResizeMessage message;
      std::memcpy(&message, record, sizeof message);
      Resize(&message);
      break;
    }
    case zlink::kStreamAsFile: StreamAsFile(record, length); break;
    case zlink::kReloadDocument: ReloadDocument(record, length); break;
  }
}

ZRDocument* ZRServer::FindDocument(int32_t id) const {
  DNode* node = m_Documents.Find(id);
  return node ? node->GetDocument() : nullptr;
}

void ZRServer::New(const zlink::TNewMessage* message) {
  PutField(m_szUserAgent, sizeof m_szUserAgent, Field(message->userAgent, zlink::kTextSize));
  m_ClientDataAddress = message->dataAddress;
  m_ClientControlAddress = message->controlAddress;
  ZRDocument* instance = new ZRDocument;
  CZephrinPlugInDoc* document = new CZephrinPlugInDoc(instance, message->mode);
  document->Set_MimeType(Field(message->mimeType, zlink::kTextSize));
  CString tex = Field(message->inlineTex, zlink::kTextSize);
  CString mml = Field(message->inlineMml, zlink::kTextSize);
  CString name = Field(message->inlineName, zlink::kTextSize);
  if (!tex.IsEmpty())
    document->Set_InlineTexData(tex);
  else if (!mml.IsEmpty())
    document->Set_InlineMmlData(mml);
  else if (!name.IsEmpty())
    document->Set_InlineName(name);
  instance->SetState(message->header.id, this, document, 0);
  m_Documents.Insert(instance, message->header.id);
  Renew();
}

void ZRServer::Destroy(const zlink::THeader* message) {
  if (ZRDocument* instance = FindDocument(message->id)) {
    CZephrinPlugInDoc* document = instance->GetDocument();
    if (document->Get_Window()) DestroyViewWidgets(document->Get_Window());
    delete document;
    m_Documents.Delete(message->id);
    delete instance;
  }
  Renew();
}

void ZRServer::SetWindow(const zlink::TSetWindowMessage* message) {
  ZRDocument* instance = FindDocument(message->header.id);
  if (!instance) {
    Renew();  // an id nobody made: dropped
    return;
  }
  CZephrinPlugInDoc* document = instance->GetDocument();
  if (!instance->IsSet()) {
    document->Set_Window(new CZephrinPlugInView);
    instance->Set();
  } else if (document->Get_Window()) {
    // New widgets; the view object and the document's tree stay.
    DestroyViewWidgets(document->Get_Window());
  }
  InitializeWindow(instance, message->window, static_cast<unsigned long>(message->x),
                   static_cast<unsigned long>(message->y), static_cast<unsigned long>(message->width),
                   static_cast<unsigned long>(message->height));
}

void ZRServer::InitializeWindow(ZRDocument* instance, unsigned long window, unsigned long /*x*/,
                                unsigned long /*y*/, unsigned long width, unsigned long height) {
  // The widgets sit at the browser window's origin whatever x and y say.
  instance->SetWindow(window);
  XtSetLanguageProc(nullptr, nullptr, nullptr);
  Dimension w = static_cast<Dimension>(width), h = static_cast<Dimension>(height);
  Widget shell = XtVaAppCreateShell("zephrin", "applicationShellWidgetClass", applicationShellWidgetClass,
                                    m_pDisplay, XmNwidth, 0, XmNheight, 0, XmNmappedWhenManaged, False, nullptr);
  Widget main = XtVaCreateManagedWidget("MainWidget", xmMainWindowWidgetClass, shell, XmNwidth, w, XmNheight, h,
                                        XmNunitType, XmPIXELS, XmNshadowThickness, 0, XmNborderWidth, 0,
                                        XmNspacing, 0, XmNmainWindowMarginWidth, 0, XmNmainWindowMarginHeight, 0,
                                        // The main window scrolls the drawing area itself: a scroll is
                                        // then plain exposes, and the bars come only when needed.
                                        XmNscrollingPolicy, XmAUTOMATIC, XmNscrollBarDisplayPolicy, XmAS_NEEDED,
                                        nullptr);
  Widget draw = XtVaCreateManagedWidget("DrawWidget", xmDrawingAreaWidgetClass, main, XmNwidth, w, XmNheight, h,
                                        XmNunitType, XmPIXELS, XmNshadowThickness, 0, XmNborderWidth, 0,
                                        XmNmarginWidth, 0, XmNmarginHeight, 0, nullptr);
  XtRealizeWidget(shell);
  AddScrollKeys(main);
  XReparentWindow(m_pDisplay, XtWindow(main), static_cast<Window>(window), 0, 0);
  GC gc = XCreateGC(m_pDisplay, XtWindow(draw), 0, nullptr);
  Widget vScroll = nullptr, hScroll = nullptr;
  XtVaGetValues(main, XmNverticalScrollBar, &vScroll, XmNhorizontalScrollBar, &hScroll, nullptr);

  CZephrinPlugInDoc* document = instance->GetDocument();
  CZephrinPlugInView* view = document->Get_Window();
  view->SubClass(shell, main, draw, vScroll, hScroll, XtWindow(draw), static_cast<Window>(window), m_pDisplay, gc,
                 m_pVisual, m_nScreen, m_nDepth, m_nColors, 0, &m_Colormap, 0, 0, static_cast<int>(width),
                 static_cast<int>(height));
  XtAddCallback(draw, XmNinputCallback, &CZephrinPlugInView::OnInputHelperXm, document);
  XtAddCallback(draw, XmNexposeCallback, &CZephrinPlugInView::OnExposeHelperXm, document);
  XtAddEventHandler(draw, PointerMotionMask, False, &CZephrinPlugInView::OnMouseMoveHelperXm, document);
  XtAddEventHandler(shell, NoEventMask, True, &ZRServer::OnClientHelper, nullptr);
  Renew();

  // The context's first foreground and background colours, once start-up
  // has placed them; black on white until then.
  const CColorRef& foreground = TFmtContext::fg_ColorForeground[0];
  const CColorRef& background = TFmtContext::fg_ColorBackground[0];
  unsigned long ink = foreground.m_bAllocated ? foreground.Pixel() : BlackPixel(m_pDisplay, m_nScreen);
  unsigned long paper = background.m_bAllocated ? background.Pixel() : WhitePixel(m_pDisplay, m_nScreen);
  XSetForeground(m_pDisplay, gc, ink);
  XSetBackground(m_pDisplay, gc, paper);
  XtVaSetValues(draw, XmNbackground, paper, nullptr);
  Widget clip = nullptr;
  XtVaGetValues(main, XmNclipWindow, &clip, nullptr);
  if (clip) XtVaSetValues(clip, XmNbackground, paper, nullptr);

  auto named = [&](const char* name, unsigned short grey) {
    XColor color{};
    color.red = color.green = color.blue = static_cast<unsigned short>(grey * 257);
    color.flags = DoRed | DoGreen | DoBlue;
    XColor exact;
    if (!XAllocNamedColor(m_pDisplay, m_Colormap, name, &color, &exact)) XAllocColor(m_pDisplay, m_Colormap, &color);
    return color.pixel;
  };
  unsigned long grey57 = named("grey57", 145), darkGrey = named("dark grey", 169), grey = named("grey", 190),
                lightGrey = named("light grey", 211);
  XtVaSetValues(main, XmNbackground, grey, nullptr);
  for (Widget bar : {vScroll, hScroll}) {
    if (!bar) continue;
    XtVaSetValues(bar, XmNunitType, XmPIXELS, XmNshadowThickness, 0, XmNborderWidth, 0, XmNtroughColor, darkGrey,
                  XmNbottomShadowColor, grey57, XmNtopShadowColor, lightGrey, XmNbackground, grey, nullptr);
  }
}

void ZRServer::StreamAsFile(const char* record, int length) {
  zlink::TStreamAsFileHead head;
  std::memcpy(&head, record, sizeof head);
  const char* rest = record + sizeof head;
  CString local = Field(rest, static_cast<size_t>(length) - sizeof head);
  if (local.IsEmpty()) {
    TRACE("ZRServer::StreamAsFile : We do not handle this!\n");
    std::exit(0);
  }
  // The browser encodes a drive colon as "%7C"; one occurrence is undone,
  // the lower-case form's position winning when both are there.
  int at = local.Find("%7c");
  if (at < 0) at = local.Find("%7C");
  if (at >= 0) local = local.Left(at) + ":" + local.Mid(at + 3);
  ZRDocument* instance = FindDocument(head.header.id);
  if (!instance) {
    Renew();
    return;
  }
  CZephrinPlugInDoc* document = instance->GetDocument();
  CString url = Field(head.url, zlink::kTextSize);
  CNpZephrinApp* app = AfxGetApp();
  if (!document->NotifyUrlUser(url, local)) {
    document->Set_Url(url);
    document->Set_FileName(local);
    if (UrlEqual(url, app->Get_MostRecentlyRequestedUrl())) document->Set_Label(app->Get_MostRecentlyRequestedUrlLabel());
    if (document->Get_Window()) document->Get_Window()->Invalidate(1);
  }
  app->Set_MostRecentlyRequestedUrl(nullptr, nullptr);
  Renew();
}

void ZRServer::Resize(const zlink::TResizeMessage* message) {
  ZRDocument* instance = FindDocument(message->header.id);
  if (!instance) {
    Renew();
    return;
  }
  CZephrinPlugInView* view = instance->GetDocument()->Get_Window();
  // Before SetWindow the ticks stop, as designed: the shim never does this.
  if (instance->IsSet() != 1 || !view) return;
  view->SetGeometry(message->x, message->y, message->width, message->height);
  Dimension w = static_cast<Dimension>(message->width), h = static_cast<Dimension>(message->height);
  XtResizeWidget(view->m_MainWidget, w, h, 0);
  XtResizeWidget(view->m_DrawWidget, w, h, 0);
  view->RecomposeAndRedraw();
  Renew();
}

void ZRServer::ReloadDocument(const char* record, int length) {
  zlink::THeader header;
  std::memcpy(&header, record, sizeof header);
  ZRDocument* instance = FindDocument(header.id);
  if (!instance) {
    Renew();
    return;
  }
  CZephrinPlugInDoc* document = instance->GetDocument();
  document->Set_InlineTexData(Field(record + sizeof header, static_cast<size_t>(length) - sizeof header));
  document->Set_DocumentIsLoaded(0);
  // The load repaints: a document with a file reads its file again.
  document->LoadDocument();
  Renew();
}

void ZRServer::FillDocumentText(zlink::TTextRecord* record, const char* text) {
  std::memset(record, 0, sizeof *record);
  record->type = zlink::kDocumentText;
  record->length = sizeof *record;
  std::strncpy(record->text, text ? text : "", sizeof record->text);
  record->text[sizeof record->text - 1] = 0;
  record->sentinel = zlink::kDocumentText;
}

void ZRServer::FillStatus(zlink::TTextRecord* record, int32_t id, const char* text) {
  std::memset(record, 0, sizeof *record);
  record->type = zlink::kStatus;
  record->length = sizeof *record;
  record->id = id;
  if (!text || std::strlen(text) >= sizeof record->text) text = "Ready";
  std::strcpy(record->text, text);
  record->sentinel = zlink::kStatus;
}

void ZRServer::GetDocument(const zlink::THeader* message) {
  ZephrinStat* stat = ZephrinStat::GetZephrinStatObject();
  ZRDocument* instance = FindDocument(message->id);
  if (!instance) {
    Renew();
    return;
  }
  int fd = socket(AF_INET, SOCK_STREAM, 0);
  if (fd < 0) stat->ErrorExit(1, "ZRServer::GetDocument : building tcp socket");
  int on = 1;
  setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (connect(fd, reinterpret_cast<sockaddr*>(&m_ClientControlAddress), sizeof m_ClientControlAddress) < 0)
    stat->ErrorExit(4, "ZRServer::GetDocument : connecting to client");
  CString text;
  int column = 0;
  if (CZephrinPlugInDoc* document = instance->GetDocument())
    if (TFmtDocumentNode* node = document->Get_DocumentNode()) node->PrintTex(text, column);
  zlink::TTextRecord reply;
  FillDocumentText(&reply, text);
  const char* p = reinterpret_cast<const char*>(&reply);
  size_t left = sizeof reply;
  while (left > 0) {
    ssize_t n = write(fd, p, left);
    if (n <= 0) break;
    p += n;
    left -= static_cast<size_t>(n);
  }
  close(fd);
  Renew();
}

int ZRServer::GetURL(ZRDocument* document, const char* url, const char* target) {
  zlink::TUrlRequest record;
  std::memset(&record, 0, sizeof record);
  record.type = zlink::kGetUrl;
  record.length = sizeof record;
  record.id = document ? document->GetDocID() : 0;
  PutField(record.url, sizeof record.url, url);
  if (target)
    PutField(record.target, sizeof record.target, target);
  else
    record.noTarget = 1;
  record.sentinel = zlink::kGetUrl;
  Write(reinterpret_cast<const char*>(&record), sizeof record);
  if (document) SendClientEvent(document->GetWindow());
  return 1;
}

int ZRServer::NSStatus(ZRDocument* document, const char* text) {
  zlink::TTextRecord record;
  FillStatus(&record, document ? document->GetDocID() : 0, text);
  Write(reinterpret_cast<const char*>(&record), sizeof record);
  if (document) SendClientEvent(document->GetWindow());
  return 1;
}

void ZRServer::SendClientEvent(unsigned long window) {
  if (!m_pDisplay || !window) return;
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.format = 32;
  event.xclient.display = m_pDisplay;
  event.xclient.window = window;
  XSendEvent(m_pDisplay, window, True, 33, &event);
  XFlush(m_pDisplay);
}
