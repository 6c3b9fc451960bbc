// The records of the link between the plug-in shim and the host process.
// One record per TCP connection; every integer in this machine's byte order;
// text fields are zero-terminated inside their size when the peer behaves.
#pragma once

#include <netinet/in.h>

#include <cstddef>
#include <cstdint>

namespace zlink {

enum : uint32_t {
  kNew = 20,
  kDestroy = 30,
  kSetWindow = 40,
  kStreamAsFile = 50,
  kReloadDocument = 60,
  kGetDocument = 70,
  kResize = 200,
  kInitComplete = 100,
  kDocumentText = 70,  // host to shim: the reply to kGetDocument
  kGetUrl = 130,
  kStatus = 140,
};

constexpr int kTextSize = 1000;
// The host reads each record into a buffer of this size.
constexpr int kReadCapacity = 10000;

struct THeader {
  uint32_t type;
  uint32_t length;
  int32_t id;
};

struct TNewMessage {
  THeader header;
  uint16_t reserved;
  uint16_t mode;  // 2: a full-page instance
  char mimeType[kTextSize];
  char userAgent[kTextSize];
  char inlineTex[kTextSize];
  char inlineMml[kTextSize];
  char inlineName[kTextSize];
  sockaddr_in dataAddress;     // URL requests and status texts go here
  sockaddr_in controlAddress;  // document text replies go here
};
static_assert(sizeof(TNewMessage) == 5048);
static_assert(offsetof(TNewMessage, mimeType) == 16 && offsetof(TNewMessage, dataAddress) == 5016);

struct TSetWindowMessage {
  THeader header;
  uint32_t window;
  int32_t x, y, width, height;
};
static_assert(sizeof(TSetWindowMessage) == 32);

struct TResizeMessage {
  THeader header;
  int32_t x, y, width, height;
};
static_assert(sizeof(TResizeMessage) == 28);

// The local file name follows the URL up to the record's length.
struct TStreamAsFileHead {
  THeader header;
  char url[kTextSize];
};
static_assert(sizeof(TStreamAsFileHead) == 1012);

struct TUrlRequest {
  uint32_t type;  // 130
  uint32_t length;
  int32_t id;
  char url[kTextSize];
  char target[kTextSize];
  uint32_t noTarget;  // 1: target undefined
  uint32_t zero;
  uint32_t sentinel;  // 130 again
};
static_assert(sizeof(TUrlRequest) == 2024);

// The status text and the document text reply share one shape.
struct TTextRecord {
  uint32_t type;  // 140 or 70
  uint32_t length;
  int32_t id;  // not set in the document text reply
  char text[kTextSize];
  uint32_t zero;
  uint32_t sentinel;
};
static_assert(sizeof(TTextRecord) == 1020);

// The smallest length a record of this type may declare; 0 for a type the
// link does not know.
inline uint32_t MinimumLength(uint32_t type) {
  switch (type) {
    case kNew: return sizeof(TNewMessage);
    case kDestroy:
    case kGetDocument:
    case kReloadDocument: return sizeof(THeader);
    case kSetWindow: return sizeof(TSetWindowMessage);
    case kResize: return sizeof(TResizeMessage);
    case kStreamAsFile: return sizeof(TStreamAsFileHead);
    default: return 0;
  }
}

// The client event the host sends to the browser's window once a document
// has been painted for the first time after a load: every drawing request
// of that paint is ahead of it on the host's X connection.
constexpr const char* kPaintDoneAtom = "_ZEPHRIN_PAINT_DONE";

}  // namespace zlink
