#include "host/zephrin_main.h"

#include <Xm/MwmUtil.h>
#include <Xm/Xm.h>
#include <X11/Shell.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "errors/parse_errors.h"
#include "framework/modal_loop.h"
#include "framework/util.h"
#include "host/np_zephrin_app.h"
#include "host/resource.h"
#include "host/zephrin_stat.h"
#include "host/zr_server.h"
#include "media/jpeg_image.h"

void ShutDown() { std::exit(0); }

namespace {
// Modal dialogs stop the tick around their own event loops.
void StopTimer() { Resource::GetResourceObject()->StopAppTimer(); }
void StartTimer() { Resource::GetResourceObject()->StartAppTimer(); }
}  // namespace

int ZephrinMain(int argc, char** argv) {
  if (argc != 4) {
    TRACE("zephrin --- invalid arguments!\n");
    std::exit(0);
  }
  ZRServer* server = new (std::nothrow) ZRServer;  // lives as long as the process
  if (!server) {
    std::perror("allocating zephrin server");
    std::exit(errno);
  }
  server->SetEnv(std::atoi(argv[1]), std::atoi(argv[2]));

  Resource* resource = Resource::GetResourceObject();
  static XtAppContext appContext;
  resource->SetResources(server, &appContext);

  int width, height;
  {
    JPEGImage probe(Resource::GetStringResource(50001));
    width = static_cast<int>(probe.dwGetWidth());
    height = static_cast<int>(probe.dwGetHeight());
  }

  // MWM_DECOR_BORDER alone: the splash has neither title bar nor handles.
  Widget shell = XtVaAppInitialize(&appContext, "Zephrin", nullptr, 0, &argc, argv, nullptr, XmNwidth, width,
                                   XmNheight, height, XmNborderWidth, 0, XmNmarginWidth, 0, XmNmarginHeight, 0,
                                   XmNmwmDecorations, MWM_DECOR_BORDER, nullptr);
  Display* display = XtDisplay(shell);
  int screen = DefaultScreen(display);
  Visual* visual = DefaultVisual(display, screen);
  int depth = DefaultDepth(display, screen);
  static Colormap colormap;
  colormap = DefaultColormap(display, screen);
  Window root = RootWindow(display, screen);
  GC gc = XCreateGC(display, root, 0, nullptr);

  XWindowAttributes rootAttributes;
  XGetWindowAttributes(display, root, &rootAttributes);
  XtVaSetValues(shell, XmNx, rootAttributes.width / 2 - width / 2, XmNy, rootAttributes.height / 2 - height / 2,
                nullptr);

  server->SetGUI(&appContext, shell, display, screen, visual, depth, 255, 0, colormap);
  resource->SetColors();

  XtRealizeWidget(shell);
  ZephrinStat* stat = ZephrinStat::GetZephrinStatObject();
  stat->Initialize(shell, ShutDown);
  TModalLoopGuard::SetTimerActions(StopTimer, StartTimer);
  CZrError::Set_DialogParent(shell);  // the hidden splash shell parents every dialog

  // Drawn once; the splash is not redrawn on exposure.
  static JPEGImage* splash = new JPEGImage(shell, gc, display, visual, screen, depth, 255, &colormap, 0, 255);
  splash->LoadImage(Resource::GetStringResource(50001));
  splash->Draw(0, 0);

  XSetErrorHandler(&ZRServer::XErrorHandler);
  int fontStatus = server->LoadFonts();
  int registryStatus = resource->SetRegistry();
  // Even after a failure: the report carries the listening address.
  server->InitializeNetwork();

  if (fontStatus == 7 && registryStatus == 13) {
    CNpZephrinApp::GetPlugInDllObject()->InitInstance();
    server->InitComplete(1);
    resource->StartAppTimer();
    sleep(1);  // keeps the splash readable after the shim has been told
    XUnmapWindow(display, XtWindow(shell));
  } else {
    // No timer: the process serves nothing and waits for its wizard's close
    // or its parent's kill.
    server->InitComplete(0);
    sleep(1);
    XUnmapWindow(display, XtWindow(shell));
    if (fontStatus != 7) stat->ErrorMessage(fontStatus, "ZRServer::LoadFonts");
    if (registryStatus != 13) stat->ErrorMessage(14, "CWinApp::InitializeRegistry: Accessing zephrin registry");
  }
  XtAppMainLoop(appContext);
  return 0;
}
