#include <gtest/gtest.h>

#include "support/x_app.h"

#include <Xm/Xm.h>

#include <cstdlib>

namespace ztest {
XApp* SharedXApp() {
  static XApp* app = [] () -> XApp* {
    if (!std::getenv("DISPLAY")) return nullptr;
    auto* made = new XApp{};
    int argc = 1;
    static char name[] = "zephrin-test";
    static char* argv[] = {name, nullptr};
    made->shell = XtVaAppInitialize(&made->app, "Zephrin", nullptr, 0, &argc, argv, nullptr, XmNwidth, 100,
                                    XmNheight, 100, nullptr);
    XtRealizeWidget(made->shell);
    made->display = XtDisplay(made->shell);
    return made;
  }();
  EXPECT_NE(app, nullptr) << "no DISPLAY: run under tests/run-with-xvfb";
  return app;
}

void PumpXEvents() {
  XApp* x = SharedXApp();
  if (!x) return;
  XSync(x->display, False);
  while (XtAppPending(x->app)) XtAppProcessEvent(x->app, XtIMAll);
}
}  // namespace ztest
