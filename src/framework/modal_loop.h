// Modal dialogs run an event loop of their own. While one is up the host's
// link tick must not run, or a record could arrive under an open dialog; the
// guard stops the tick for its lifetime. The host installs the two actions at
// start; without a host (tools, tests) the guard does nothing.
#pragma once

class TModalLoopGuard {
 public:
  using Action = void (*)();
  static void SetTimerActions(Action stop, Action start) {
    fg_Stop = stop;
    fg_Start = start;
  }

  TModalLoopGuard() {
    if (fg_Stop) fg_Stop();
  }
  ~TModalLoopGuard() {
    if (fg_Start) fg_Start();
  }
  TModalLoopGuard(const TModalLoopGuard&) = delete;
  TModalLoopGuard& operator=(const TModalLoopGuard&) = delete;

 private:
  static inline Action fg_Stop = nullptr;
  static inline Action fg_Start = nullptr;
};
