// ZRServer: the host process's server object. It adds the X handles to the
// socket side and owns the start-up report, the font check and the tick.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>

#include "host/link_records.h"
#include "host/ns_server.h"
#include "host/zr_document.h"

class ZRServer : public NSServer {
 public:
  // The record that tells the shim where to send and whether we are ready.
  struct TInitCompleteMessage {
    uint32_t type;        // 100
    uint32_t length;      // 36
    sockaddr_in address;  // our listening address
    uint32_t zero;
    uint32_t ready;       // 1 ready, 0 start-up failed
    uint32_t sentinel;    // 100 again
  };
  static_assert(sizeof(TInitCompleteMessage) == 36);
  static constexpr uint32_t kInitCompleteType = 100;

  // Parent id, shim port and both directories. Without HOME the process ends
  // with status 17.
  void SetEnv(int parentId, int port);
  void SetGUI(XtAppContext* appContext, Widget topLevel, Display* display, int screen, Visual* visual,
              int depth, int colorCount, int zero, Colormap colormap);

  // 7 when the fonts are visible to the server (perhaps after adding our
  // directories to its path), else the failing status with the path undone.
  int LoadFonts();
  // 1 when every font of ids 80000..80010 loads, else 0.
  int CheckFontAvailability();
  // Swallows every X error; a refused font path is remembered.
  static int XErrorHandler(Display* display, XErrorEvent* event);

  // Sends the start-up report to the shim's control address.
  void InitComplete(int ok);

  // The 50 ms tick: ends the process once the parent has gone, else takes
  // at most one record and hands it to its handler.
  static void OnTimeOutHelper(XtPointer server, XtIntervalId* id);
  static void OnClientHelper(Widget, XtPointer, XEvent*, Boolean*) {}
  // Checks the record's length for its type, then calls the handler. Every
  // handler renews the timer as its last act (Resize before SetWindow does
  // not, and the ticks stop).
  void Dispatch(const char* record, int length);

  // ---- records from the shim ----
  void New(const zlink::TNewMessage* message);
  void Destroy(const zlink::THeader* message);
  void SetWindow(const zlink::TSetWindowMessage* message);
  void StreamAsFile(const char* record, int length);
  void Resize(const zlink::TResizeMessage* message);
  void ReloadDocument(const char* record, int length);
  void GetDocument(const zlink::THeader* message);

  // ---- records to the shim ----
  int GetURL(ZRDocument* document, const char* url, const char* target);
  int NSStatus(ZRDocument* document, const char* text);
  // Wakes a shim that waits in the browser's event loop.
  void SendClientEvent(unsigned long window);
  const char* UserAgent(ZRDocument*) const { return "hello"; }
  // The widgets of an instance's view, reparented into the browser window.
  void InitializeWindow(ZRDocument* document, unsigned long window, unsigned long x, unsigned long y,
                        unsigned long width, unsigned long height);

  // The document text reply: the text cut to 999 characters when longer.
  static void FillDocumentText(zlink::TTextRecord* record, const char* text);
  // The status record: a text of 1000 characters or more reads "Ready".
  static void FillStatus(zlink::TTextRecord* record, int32_t id, const char* text);

  DList& GetDocumentList() { return m_Documents; }
  int GetRecordsHandled() const { return m_nRecords; }

  Display* GetDisplay() const { return m_pDisplay; }
  int GetScreen() const { return m_nScreen; }
  Visual* GetVisual() const { return m_pVisual; }
  int GetDepth() const { return m_nDepth; }
  Colormap GetColormap() const { return m_Colormap; }
  XtAppContext* GetAppContext() const { return m_pAppContext; }
  Widget GetTopLevel() const { return m_TopLevel; }

 private:
  ZRDocument* FindDocument(int32_t id) const;

  DList m_Documents;
  int m_nRecords = 0;
  Display* m_pDisplay = nullptr;
  int m_nScreen = 0;
  Visual* m_pVisual = nullptr;
  int m_nDepth = 0;
  int m_nColors = 0;  // always 255
  int m_nZero = 0;
  Colormap m_Colormap = 0;
  XtAppContext* m_pAppContext = nullptr;
  Widget m_TopLevel = nullptr;
};
