#include "viewer.h"

#include <Xm/DrawingA.h>
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/Protocols.h>
#include <Xm/Xm.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <arpa/inet.h>
#include <fcntl.h>
#include <png.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <vector>

#include "framework/url.h"
#include "host/link_client.h"
#include "host/link_records.h"

namespace {
namespace fs = std::filesystem;

// How long the host may take to report, and to paint for --png.
constexpr int kReportTimeoutMs = 60000;
constexpr int kPaintTimeoutMs = 60000;

void StopHost();
void StopXvfb();

[[noreturn]] void Fail(int code, const std::string& text) {
  std::fprintf(stderr, "zephrin-view: %s\n", text.c_str());
  std::fflush(stderr);
  StopHost();
  StopXvfb();
  _exit(code);
}

// ---- a private X server for --png without a display ----

pid_t fg_Xvfb = -1;
pid_t fg_Host = -1;

// With a private X server the host is ended before the server goes, so that
// it does not complain of a lost display; otherwise it ends by itself at its
// next tick, once its parent has gone.
void StopHostBeforeXvfb() {
  if (fg_Host > 0 && fg_Xvfb > 0) {
    kill(fg_Host, SIGTERM);
    waitpid(fg_Host, nullptr, 0);
  }
  fg_Host = -1;
}

// After a failure: a host that failed its start runs no ticks and would
// wait for ever.
void StopHost() {
  if (fg_Host > 0) {
    kill(fg_Host, SIGTERM);
    waitpid(fg_Host, nullptr, 0);
  }
  fg_Host = -1;
}

void StopXvfb() {
  if (fg_Xvfb > 0) {
    kill(fg_Xvfb, SIGTERM);
    waitpid(fg_Xvfb, nullptr, 0);
    fg_Xvfb = -1;
  }
}

bool StartXvfb() {
  for (int n = 90; n < 190; ++n) {
    std::string lock = "/tmp/.X" + std::to_string(n) + "-lock";
    std::string socket = "/tmp/.X11-unix/X" + std::to_string(n);
    if (access(lock.c_str(), F_OK) == 0 || access(socket.c_str(), F_OK) == 0) continue;
    std::string display = ":" + std::to_string(n);
    pid_t pid = fork();
    if (pid < 0) return false;
    if (pid == 0) {
      int null = open("/dev/null", O_RDWR);
      if (null >= 0) {
        dup2(null, 1);
        dup2(null, 2);
      }
      // -noreset: the server keeps the font path the host adds.
      execlp("Xvfb", "Xvfb", display.c_str(), "-noreset", "-nolisten", "tcp", "-screen", "0", "1280x1024x24",
             "-dpi", "100", static_cast<char*>(nullptr));
      _exit(127);
    }
    for (int i = 0; i < 200; ++i) {
      if (access(socket.c_str(), F_OK) == 0) {
        fg_Xvfb = pid;
        setenv("DISPLAY", display.c_str(), 1);
        std::atexit(StopXvfb);
        return true;
      }
      if (waitpid(pid, nullptr, WNOHANG) == pid) break;  // taken meanwhile: next number
      usleep(25000);
    }
    kill(pid, SIGTERM);
    waitpid(pid, nullptr, 0);
  }
  return false;
}

// ---- the viewer ----

class CViewer {
 public:
  CViewer(const TViewerOptions& options) : m_Options(options) {}
  int Run(int argc, char** argv);

 private:
  void StartHost();
  void ReadReport();
  void BuildWindow(int argc, char** argv);
  bool Send(const void* record, size_t length);
  void SendNew(int32_t id);
  void SendSetWindow(int32_t id);
  void SendStreamAsFile(int32_t id, const std::string& url, const std::string& local);
  void SendResize(int32_t id, int width, int height);
  void SendDestroy(int32_t id);
  void OpenInstance(const std::string& url, const std::string& local);
  void HandleRecord(const std::string& bytes);
  void DrainData();
  void SetStatus(const std::string& text);
  void WritePngAndExit();

  static void OnData(XtPointer self, int* fd, XtInputId*);
  static void OnControl(XtPointer self, int* fd, XtInputId*);
  static void OnCheckHost(XtPointer self, XtIntervalId*);
  static void OnPaintTimeout(XtPointer self, XtIntervalId*);
  static void OnClientEvent(Widget, XtPointer self, XEvent* event, Boolean*);
  static void OnConfigure(Widget, XtPointer self, XEvent* event, Boolean*);
  static void OnClose(Widget, XtPointer self, XtPointer);

  TViewerOptions m_Options;
  int m_nControl = -1, m_nControlPort = 0;
  int m_nData = -1, m_nDataPort = 0;
  pid_t m_Host = -1;
  sockaddr_in m_HostAddress{};
  XtAppContext m_App = nullptr;
  Widget m_Shell = nullptr, m_Draw = nullptr, m_Status = nullptr;
  Display* m_pDisplay = nullptr;
  Atom m_PaintDone = 0;
  int32_t m_nId = 1;
  int m_nWidth = 0, m_nHeight = 0;
  bool m_bWindowSent = false;
};

void CViewer::StartHost() {
  fs::path self = fs::read_symlink("/proc/self/exe");
  fs::path host = self.parent_path() / "zephrin";
  if (access(host.c_str(), X_OK) != 0) Fail(3, "cannot find the host program " + host.string());
  std::string parent = std::to_string(getpid());
  std::string port = std::to_string(m_nControlPort);
  m_Host = fork();
  if (m_Host < 0) Fail(3, "cannot start the host");
  if (m_Host == 0) {
    close(m_nControl);
    close(m_nData);
    execl(host.c_str(), host.c_str(), parent.c_str(), port.c_str(), "view", static_cast<char*>(nullptr));
    _exit(127);
  }
  fg_Host = m_Host;
  std::atexit(StopHostBeforeXvfb);  // runs before StopXvfb, registered earlier
}

void CViewer::ReadReport() {
  auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kReportTimeoutMs);
  std::string bytes;
  while (bytes.empty()) {
    int status = 0;
    if (waitpid(m_Host, &status, WNOHANG) == m_Host && (fg_Host = -1) < 0)
      Fail(4, "the host ended before it was ready (exit status " +
                  std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status)) + ")");
    if (std::chrono::steady_clock::now() >= end) Fail(4, "the host did not report within a minute");
    bytes = zlink::AcceptRecord(m_nControl, 200);
  }
  zlink::THeader header{};
  if (bytes.size() != 36) Fail(4, "the host's report has " + std::to_string(bytes.size()) + " bytes, not 36");
  uint32_t words[9];
  std::memcpy(words, bytes.data(), 36);
  (void)header;
  if (words[0] != zlink::kInitComplete || words[8] != zlink::kInitComplete) Fail(4, "the host's report is malformed");
  if (words[7] != 1)
    Fail(4, "the host is not ready: its fonts or its profile store are missing (run ./run to install them)");
  std::memcpy(&m_HostAddress, bytes.data() + 8, sizeof m_HostAddress);
  m_HostAddress.sin_family = AF_INET;
}

bool CViewer::Send(const void* record, size_t length) {
  int fd = socket(AF_INET, SOCK_STREAM, 0);
  if (fd < 0) return false;
  bool ok = connect(fd, reinterpret_cast<const sockaddr*>(&m_HostAddress), sizeof m_HostAddress) == 0;
  const char* p = static_cast<const char*>(record);
  while (ok && length > 0) {
    ssize_t n = write(fd, p, length);
    if (n <= 0) ok = false;
    else {
      p += n;
      length -= static_cast<size_t>(n);
    }
  }
  close(fd);
  return ok;
}

void CViewer::SendNew(int32_t id) {
  zlink::TNewMessage message{};
  message.header = {zlink::kNew, sizeof message, id};
  message.mode = 2;
  std::strcpy(message.mimeType, "application/x-zephrin");
  std::strcpy(message.userAgent, "zephrin-view/1.0");
  // Both addresses: this machine as the host sees it, with our ports.
  message.dataAddress = m_HostAddress;
  message.dataAddress.sin_port = htons(static_cast<uint16_t>(m_nDataPort));
  message.controlAddress = m_HostAddress;
  message.controlAddress.sin_port = htons(static_cast<uint16_t>(m_nControlPort));
  Send(&message, sizeof message);
}

void CViewer::SendSetWindow(int32_t id) {
  zlink::TSetWindowMessage message{};
  message.header = {zlink::kSetWindow, sizeof message, id};
  message.window = static_cast<uint32_t>(XtWindow(m_Draw));
  message.width = m_nWidth;
  message.height = m_nHeight;
  Send(&message, sizeof message);
  m_bWindowSent = true;
}

void CViewer::SendStreamAsFile(int32_t id, const std::string& url, const std::string& local) {
  std::vector<char> record(sizeof(zlink::TStreamAsFileHead) + local.size() + 1, 0);
  zlink::TStreamAsFileHead head{};
  head.header = {zlink::kStreamAsFile, static_cast<uint32_t>(record.size()), id};
  std::strncpy(head.url, url.c_str(), sizeof head.url - 1);
  std::memcpy(record.data(), &head, sizeof head);
  std::memcpy(record.data() + sizeof head, local.c_str(), local.size());
  Send(record.data(), record.size());
}

void CViewer::SendResize(int32_t id, int width, int height) {
  zlink::TResizeMessage message{};
  message.header = {zlink::kResize, sizeof message, id};
  message.width = width;
  message.height = height;
  Send(&message, sizeof message);
}

void CViewer::SendDestroy(int32_t id) {
  zlink::THeader message{zlink::kDestroy, sizeof message, id};
  Send(&message, sizeof message);
}

void CViewer::OpenInstance(const std::string& url, const std::string& local) {
  SendNew(m_nId);
  SendSetWindow(m_nId);
  SendStreamAsFile(m_nId, url, local);
}

void CViewer::SetStatus(const std::string& text) {
  XmString label = XmStringCreateLocalized(const_cast<char*>(text.c_str()));
  XtVaSetValues(m_Status, XmNlabelString, label, nullptr);
  XmStringFree(label);
}

void CViewer::HandleRecord(const std::string& bytes) {
  if (bytes.size() < 12) return;
  uint32_t type;
  std::memcpy(&type, bytes.data(), sizeof type);
  if (type == zlink::kStatus && bytes.size() >= sizeof(zlink::TTextRecord)) {
    zlink::TTextRecord record;
    std::memcpy(&record, bytes.data(), sizeof record);
    SetStatus(std::string(record.text, strnlen(record.text, sizeof record.text)));
  } else if (type == zlink::kGetUrl && bytes.size() >= sizeof(zlink::TUrlRequest)) {
    zlink::TUrlRequest request;
    std::memcpy(&request, bytes.data(), sizeof request);
    std::string url(request.url, strnlen(request.url, sizeof request.url));
    std::string target = request.noTarget ? "" : std::string(request.target, strnlen(request.target, sizeof request.target));
    if (url.size() < 5 || strncasecmp(url.c_str(), "file:", 5) != 0) {
      SetStatus("zephrin-view fetches local files only: " + url);
      return;
    }
    std::string local = std::string(FileUrlToFile(url.c_str()).c_str());
    if (target.empty()) {
      // \input and pictures: the file goes to the instance that asked.
      SendStreamAsFile(request.id, url, local);
    } else {
      // A link to another page: this instance goes, a fresh one shows it.
      SendDestroy(m_nId);
      ++m_nId;
      OpenInstance(url, local);
    }
  }
}

void CViewer::DrainData() {
  for (;;) {
    std::string bytes = zlink::AcceptRecord(m_nData, 0);
    if (bytes.empty()) return;
    HandleRecord(bytes);
  }
}

void CViewer::OnData(XtPointer self, int*, XtInputId*) {
  auto* viewer = static_cast<CViewer*>(self);
  viewer->HandleRecord(zlink::AcceptRecord(viewer->m_nData, 0));
}

// Document text replies; the viewer has no use for them.
void CViewer::OnControl(XtPointer self, int*, XtInputId*) { zlink::AcceptRecord(static_cast<CViewer*>(self)->m_nControl, 0); }

void CViewer::OnCheckHost(XtPointer self, XtIntervalId*) {
  auto* viewer = static_cast<CViewer*>(self);
  int status = 0;
  if (waitpid(viewer->m_Host, &status, WNOHANG) == viewer->m_Host) {
    fg_Host = -1;
    int code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    Fail(4, "the host ended unexpectedly (exit status " + std::to_string(code) + ")");
  }
  XtAppAddTimeOut(viewer->m_App, 200, &CViewer::OnCheckHost, viewer);
}

void CViewer::OnPaintTimeout(XtPointer, XtIntervalId*) { Fail(5, "the host did not finish painting within a minute"); }

void CViewer::OnClientEvent(Widget, XtPointer self, XEvent* event, Boolean*) {
  auto* viewer = static_cast<CViewer*>(self);
  if (event->type != ClientMessage || event->xclient.message_type != viewer->m_PaintDone) return;
  if (!viewer->m_Options.png.empty()) viewer->WritePngAndExit();
}

void CViewer::OnConfigure(Widget, XtPointer self, XEvent* event, Boolean*) {
  auto* viewer = static_cast<CViewer*>(self);
  if (event->type != ConfigureNotify) return;
  int width = event->xconfigure.width, height = event->xconfigure.height;
  if (width == viewer->m_nWidth && height == viewer->m_nHeight) return;
  viewer->m_nWidth = width;
  viewer->m_nHeight = height;
  // Never before SetWindow: the host would stop taking records.
  if (viewer->m_bWindowSent) viewer->SendResize(viewer->m_nId, width, height);
}

void CViewer::OnClose(Widget, XtPointer self, XtPointer) {
  auto* viewer = static_cast<CViewer*>(self);
  viewer->SendDestroy(viewer->m_nId);
  std::exit(0);
}

void CViewer::BuildWindow(int argc, char** argv) {
  XtSetLanguageProc(nullptr, nullptr, nullptr);
  m_Shell = XtVaAppInitialize(&m_App, "ZephrinView", nullptr, 0, &argc, argv, nullptr, XmNtitle,
                              ("zephrin-view: " + fs::path(m_Options.file).filename().string()).c_str(),
                              XmNdeleteResponse, XmDO_NOTHING, nullptr);
  m_pDisplay = XtDisplay(m_Shell);
  Widget form = XtVaCreateManagedWidget("form", xmFormWidgetClass, m_Shell, nullptr);
  XmString empty = XmStringCreateLocalized(const_cast<char*>(" "));
  m_Status = XtVaCreateManagedWidget("status", xmLabelWidgetClass, form, XmNlabelString, empty, XmNalignment,
                                     XmALIGNMENT_BEGINNING, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment,
                                     XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM, XmNrecomputeSize, False,
                                     nullptr);
  XmStringFree(empty);
  m_nWidth = m_Options.width;
  m_nHeight = m_Options.height;
  m_Draw = XtVaCreateManagedWidget("browserWindow", xmDrawingAreaWidgetClass, form, XmNwidth, m_nWidth, XmNheight,
                                   m_nHeight, XmNmarginWidth, 0, XmNmarginHeight, 0, XmNtopAttachment,
                                   XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment,
                                   XmATTACH_FORM, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, m_Status,
                                   nullptr);
  m_PaintDone = XInternAtom(m_pDisplay, zlink::kPaintDoneAtom, False);
  XtAddEventHandler(m_Draw, NoEventMask, True, &CViewer::OnClientEvent, this);
  XtAddEventHandler(m_Draw, StructureNotifyMask, False, &CViewer::OnConfigure, this);
  Atom deleteWindow = XInternAtom(m_pDisplay, "WM_DELETE_WINDOW", False);
  XmAddWMProtocolCallback(m_Shell, deleteWindow, &CViewer::OnClose, this);
  XtRealizeWidget(m_Shell);
  // The host reparents into this window: it must exist on the server first.
  XSync(m_pDisplay, False);
}

// Grabs the whole top-level window (drawing area and status line).
void CViewer::WritePngAndExit() {
  // Status texts that came with the paint go on the status line first.
  DrainData();
  XmUpdateDisplay(m_Shell);
  XSync(m_pDisplay, False);
  while (XtAppPending(m_App) & XtIMXEvent) XtAppProcessEvent(m_App, XtIMXEvent);
  XSync(m_pDisplay, False);
  Window window = XtWindow(m_Shell);
  XWindowAttributes attributes;
  XGetWindowAttributes(m_pDisplay, window, &attributes);
  XImage* image = XGetImage(m_pDisplay, window, 0, 0, attributes.width, attributes.height, AllPlanes, ZPixmap);
  if (!image) Fail(6, "cannot read the window's image");
  int width = attributes.width, height = attributes.height;
  std::vector<unsigned char> rgb(static_cast<size_t>(width) * height * 3);
  std::map<unsigned long, XColor> cache;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      unsigned long pixel = XGetPixel(image, x, y);
      auto at = cache.find(pixel);
      if (at == cache.end()) {
        XColor color{};
        color.pixel = pixel;
        XQueryColor(m_pDisplay, attributes.colormap, &color);
        at = cache.emplace(pixel, color).first;
      }
      unsigned char* out = &rgb[(static_cast<size_t>(y) * width + x) * 3];
      out[0] = static_cast<unsigned char>(at->second.red >> 8);
      out[1] = static_cast<unsigned char>(at->second.green >> 8);
      out[2] = static_cast<unsigned char>(at->second.blue >> 8);
    }
  }
  XDestroyImage(image);
  FILE* f = std::fopen(m_Options.png.c_str(), "wb");
  if (!f) Fail(6, "cannot write " + m_Options.png);
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  if (!png || !info || setjmp(png_jmpbuf(png))) {
    std::fclose(f);
    Fail(6, "cannot write " + m_Options.png);
  }
  png_init_io(png, f);
  png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8, PNG_COLOR_TYPE_RGB,
               PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  for (int y = 0; y < height; ++y) png_write_row(png, &rgb[static_cast<size_t>(y) * width * 3]);
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  std::fclose(f);
  std::printf("%s\n", m_Options.png.c_str());
  std::fflush(stdout);
  SendDestroy(m_nId);
  std::exit(0);
}

int CViewer::Run(int argc, char** argv) {
  std::error_code error;
  fs::path file = fs::absolute(m_Options.file, error);
  if (error || !fs::is_regular_file(file) || access(file.c_str(), R_OK) != 0)
    Fail(2, "cannot read " + m_Options.file);
  if (!getenv("DISPLAY") || !*getenv("DISPLAY")) {
    if (m_Options.png.empty()) Fail(2, "no DISPLAY: give --png OUT to render without a screen");
    if (!StartXvfb()) Fail(2, "no DISPLAY and no private X server (Xvfb) could be started");
  }
  signal(SIGPIPE, SIG_IGN);
  m_nControl = zlink::OpenListener(&m_nControlPort);
  m_nData = zlink::OpenListener(&m_nDataPort);
  if (m_nControl < 0 || m_nData < 0) Fail(3, "cannot open the control and data ports");
  BuildWindow(argc, argv);
  StartHost();
  ReadReport();
  XtAppAddInput(m_App, m_nData, reinterpret_cast<XtPointer>(XtInputReadMask), &CViewer::OnData, this);
  XtAppAddInput(m_App, m_nControl, reinterpret_cast<XtPointer>(XtInputReadMask), &CViewer::OnControl, this);
  XtAppAddTimeOut(m_App, 200, &CViewer::OnCheckHost, this);
  if (!m_Options.png.empty()) XtAppAddTimeOut(m_App, kPaintTimeoutMs, &CViewer::OnPaintTimeout, this);
  std::string path = file.lexically_normal().string();
  OpenInstance("file:" + path, path);
  XtAppMainLoop(m_App);
  return 0;
}
}  // namespace

bool ParseViewerOptions(int argc, char** argv, TViewerOptions* options, std::string* error) {
  for (int i = 1; i < argc; ++i) {
    std::string arg = argv[i];
    if (arg == "--png" || arg == "--size") {
      if (i + 1 >= argc) {
        *error = arg + " needs a value";
        return false;
      }
      std::string value = argv[++i];
      if (arg == "--png") {
        options->png = value;
      } else {
        int w = 0, h = 0;
        char extra;
        if (std::sscanf(value.c_str(), "%dx%d%c", &w, &h, &extra) != 2 || w < 16 || h < 16 || w > 8192 || h > 8192) {
          *error = "--size wants WIDTHxHEIGHT, each 16 to 8192, not " + value;
          return false;
        }
        options->width = w;
        options->height = h;
      }
    } else if (!arg.empty() && arg[0] == '-' && arg != "-") {
      *error = "unknown option " + arg;
      return false;
    } else if (options->file.empty()) {
      options->file = arg;
    } else {
      *error = "only one FILE";
      return false;
    }
  }
  if (options->file.empty()) {
    *error = "no FILE given";
    return false;
  }
  return true;
}

int RunViewer(const TViewerOptions& options, int argc, char** argv) {
  static CViewer viewer(options);
  return viewer.Run(argc, argv);
}
