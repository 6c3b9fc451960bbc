// The X harness works end to end: a Motif shell with a drawing area is
// realized on the private server, drawn into, and read back pixel by pixel.
// GoogleTest comes first: Xlib's macros (None, Bool) break its headers.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <Xm/DrawingA.h>
#include <Xm/Xm.h>

#include <cstdlib>

namespace {
void PumpEvents(XtAppContext app, Display* display) {
  XSync(display, False);
  while (XtAppPending(app)) XtAppProcessEvent(app, XtIMAll);
}
}  // namespace

TEST(XSmokeColors, MotifDrawingAreaShowsAFilledRectangle) {
  ASSERT_NE(std::getenv("DISPLAY"), nullptr) << "run under tests/run-with-xvfb";
  int argc = 1;
  char name[] = "smoke";
  char* argv[] = {name, nullptr};
  XtAppContext app;
  Widget shell = XtVaAppInitialize(&app, "ZephrinSmoke", nullptr, 0, &argc, argv, nullptr, XmNwidth, 200,
                                   XmNheight, 150, nullptr);
  ASSERT_NE(shell, nullptr);
  Widget area = XtVaCreateManagedWidget("area", xmDrawingAreaWidgetClass, shell, XmNwidth, 200, XmNheight, 150,
                                        nullptr);
  XtRealizeWidget(shell);
  Display* display = XtDisplay(shell);
  Window window = XtWindow(area);
  ASSERT_NE(window, 0u);
  PumpEvents(app, display);

  // A colour the test asks for by name, so that the check holds on both a
  // TrueColor and a PseudoColor screen.
  Colormap colormap = DefaultColormap(display, DefaultScreen(display));
  XColor red, exact;
  ASSERT_TRUE(XAllocNamedColor(display, colormap, "red", &red, &exact));
  GC gc = XCreateGC(display, window, 0, nullptr);
  XSetForeground(display, gc, red.pixel);
  XFillRectangle(display, window, gc, 20, 30, 40, 50);  // covers x 20..59, y 30..79
  XSync(display, False);

  XImage* image = XGetImage(display, window, 0, 0, 200, 150, AllPlanes, ZPixmap);
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(XGetPixel(image, 20, 30), red.pixel);
  EXPECT_EQ(XGetPixel(image, 59, 79), red.pixel);
  EXPECT_NE(XGetPixel(image, 60, 79), red.pixel);  // one past the right edge
  EXPECT_NE(XGetPixel(image, 59, 80), red.pixel);  // one past the bottom edge
  EXPECT_NE(XGetPixel(image, 19, 30), red.pixel);
  XDestroyImage(image);
  XFreeGC(display, gc);
  XtDestroyWidget(shell);
  XtDestroyApplicationContext(app);
}
