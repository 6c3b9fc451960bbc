// Bad records on the link: each ends the host with the status the design
// names, or is dropped, and none crashes it. One host per case.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "host/link_records.h"
#include "support/link_shim.h"

namespace {
using ztest::LinkShim;

// The host's exit code after the bytes, or -1 when it lives on.
int ExitAfter(const std::string& bytes, int waitMs = 8000) {
  LinkShim shim;
  if (!shim.Start()) return -100;
  if (!shim.Send(bytes)) return -101;
  return shim.Host().WaitExit(waitMs);
}

std::string Record(uint32_t type, uint32_t length, size_t actual) {
  std::string bytes(actual, '\0');
  std::memcpy(&bytes[0], &type, 4);
  std::memcpy(&bytes[4], &length, 4);
  return bytes;
}
}  // namespace

TEST(LinkBadInput, EachBadRecordEndsTheHostWithItsStatus) {
  struct Case {
    const char* what;
    std::string bytes;
    int code;
  } cases[] = {
      {"nothing at all", "", 5},
      {"8 bytes", Record(zlink::kNew, 8, 8), 5},
      {"unknown type", Record(99, 12, 12), 6},
      {"declared above the buffer", Record(zlink::kNew, 20000, 12), 5},
      {"declared below the fixed part", Record(zlink::kSetWindow, 16, 16), 5},
      {"New below its fixed part", Record(zlink::kNew, 100, 100), 5},
      {"closed before its declared length", Record(zlink::kNew, 5048, 100), 5},
  };
  for (const Case& c : cases) EXPECT_EQ(ExitAfter(c.bytes), c.code) << c.what;
}

TEST(LinkBadInput, StreamAsFileWithoutALocalNameEndsWithZero) {
  EXPECT_EQ(ExitAfter(LinkShim::StreamAsFile(1, "file:x", "")), 0);
}

TEST(LinkBadInput, UnknownIdsAreDroppedAndTheTicksGoOn) {
  LinkShim shim;
  ASSERT_TRUE(shim.Start());
  ASSERT_TRUE(shim.Send(LinkShim::SetWindow(41, 12345, 100, 100)));
  ASSERT_TRUE(shim.Send(LinkShim::Resize(42, 100, 100)));
  ASSERT_TRUE(shim.Send(LinkShim::StreamAsFile(43, "file:/x", "/x")));
  ASSERT_TRUE(shim.Send(LinkShim::Reload(44, "text")));
  ASSERT_TRUE(shim.Send(LinkShim::Header(zlink::kGetDocument, 45)));
  ASSERT_TRUE(shim.Send(LinkShim::Header(zlink::kDestroy, 46)));
  // Still served: a GetDocument for a real instance is answered.
  ASSERT_TRUE(shim.Send(shim.NewHere(1)));
  ASSERT_TRUE(shim.Send(LinkShim::Header(zlink::kGetDocument, 1)));
  EXPECT_EQ(shim.ReadControl().size(), 1020u);
  EXPECT_EQ(shim.Host().WaitExit(0), -1);
}

TEST(LinkBadInput, TextFieldsWithoutAZeroAreReadInsideTheirSize) {
  LinkShim shim;
  ASSERT_TRUE(shim.Start());
  std::string full(1000, 'x');
  // Every text field full to its last byte, in New and StreamAsFile.
  std::string record = LinkShim::New(2, full, full, full, full);
  zlink::TNewMessage message;
  std::memcpy(&message, record.data(), sizeof message);
  std::memset(message.userAgent, 'u', sizeof message.userAgent);
  std::string own = shim.NewHere(2);
  zlink::TNewMessage addresses;
  std::memcpy(&addresses, own.data(), sizeof addresses);
  message.dataAddress = addresses.dataAddress;
  message.controlAddress = addresses.controlAddress;
  ASSERT_TRUE(shim.Send(std::string(reinterpret_cast<const char*>(&message), sizeof message)));
  // A local name that runs to the record's end without a zero.
  std::string stream = LinkShim::StreamAsFile(2, std::string(1000, 'h'), "/nonexistent/name");
  stream.pop_back();
  uint32_t length = static_cast<uint32_t>(stream.size());
  std::memcpy(&stream[4], &length, 4);
  ASSERT_TRUE(shim.Send(stream));
  ASSERT_TRUE(shim.Send(LinkShim::Header(zlink::kGetDocument, 2)));
  EXPECT_EQ(shim.ReadControl().size(), 1020u);
  EXPECT_EQ(shim.Host().WaitExit(0), -1);
}

TEST(LinkLoad, ThreeHundredRecordsAcrossTwentyInstancesAreAllHandledInOrder) {
  LinkShim shim;
  ASSERT_TRUE(shim.Start());
  // 20 New, then rounds of GetDocument over every id, with each instance
  // destroyed at a round of its own: a GetDocument after its Destroy gets no
  // reply, so the count of replies depends on the order of handling.
  std::vector<std::string> records;
  int expectedReplies = 0;
  for (int id = 1; id <= 20; ++id) records.push_back(shim.NewHere(id));
  std::vector<bool> alive(21, true);
  for (int round = 0; records.size() < 300; ++round) {
    for (int id = 1; id <= 20 && records.size() < 300; ++id) {
      if (round > 0 && id == round && records.size() < 300) {
        records.push_back(LinkShim::Header(zlink::kDestroy, id));
        alive[id] = false;
        continue;
      }
      records.push_back(LinkShim::Header(zlink::kGetDocument, id));
      if (alive[id]) ++expectedReplies;
    }
  }
  ASSERT_EQ(records.size(), 300u);
  // Replies are collected while the records go out.
  std::atomic<int> replies{0};
  std::atomic<bool> stop{false};
  std::thread reader([&] {
    while (!stop) {
      std::string reply = shim.ReadControl(200);
      if (reply.size() == 1020) ++replies;
    }
  });
  for (const std::string& record : records) ASSERT_TRUE(shim.Send(record));
  // One record a tick of 50 ms: 300 take about 15 s.
  auto end = std::chrono::steady_clock::now() + std::chrono::seconds(90);
  while (replies < expectedReplies && std::chrono::steady_clock::now() < end)
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  // A little longer: a reply too many would show now.
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  stop = true;
  reader.join();
  EXPECT_EQ(replies.load(), expectedReplies);
  EXPECT_EQ(shim.Host().WaitExit(0), -1);
}
