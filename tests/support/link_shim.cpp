#include "support/link_shim.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "host/link_client.h"
#include "support/paths.h"

namespace ztest {
namespace fs = std::filesystem;
namespace {
// Fills a text field; a text as long as the field has no zero, on purpose.
template <size_t N>
void Put(char (&field)[N], const std::string& text) {
  std::memcpy(field, text.data(), text.size() < N ? text.size() : N);
}

template <class T>
std::string Bytes(const T& value) {
  return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}
}  // namespace

std::string RecordText(const std::string& record) {
  if (record.size() < 12) return {};
  return std::string(record.c_str() + 12, strnlen(record.c_str() + 12, record.size() - 12));
}

LinkShim::LinkShim() {
  m_nData = zlink::OpenListener(&m_nDataPort);
  m_nControl = zlink::OpenListener(&m_nControlPort);
}

LinkShim::~LinkShim() {
  m_Host.KillHost();
  close(m_nData);
  close(m_nControl);
}

bool LinkShim::Start(const std::string& registry) {
  const char* staged = std::getenv("ZEPHRIN_HOME");
  m_Host.SetEnv("ZEPHRIN_HOME", staged ? std::string(staged) : BuildPath("install"));
  m_Home = ScratchDir("home");
  fs::create_directories(fs::path(m_Home) / ".zephrin" / "Cache");
  WriteFile(m_Home + "/.zephrin/Cache/registry", registry);
  m_Host.SetEnv("HOME", m_Home);
  if (!m_Host.Start()) return false;
  std::string report;
  if (!m_Host.ReadReport(&report, 30000) || report.size() != 36) return false;
  HostReport decoded = HostShim::Decode(report);
  m_HostAddress = decoded.address;
  return decoded.ready == 1;
}

bool LinkShim::Send(const std::string& bytes) {
  int fd = socket(AF_INET, SOCK_STREAM, 0);
  if (connect(fd, reinterpret_cast<sockaddr*>(&m_HostAddress), sizeof m_HostAddress) != 0) {
    close(fd);
    return false;
  }
  size_t done = 0;
  while (done < bytes.size()) {
    ssize_t n = write(fd, bytes.data() + done, bytes.size() - done);
    if (n <= 0) break;
    done += static_cast<size_t>(n);
  }
  close(fd);
  return done == bytes.size();
}

bool LinkShim::SendNothing() { return Send(""); }

std::string LinkShim::New(int32_t id, const std::string& tex, const std::string& mml, const std::string& name,
                          const std::string& mime) {
  zlink::TNewMessage message{};
  message.header = {zlink::kNew, sizeof message, id};
  message.mode = 2;
  Put(message.mimeType, mime);
  std::strcpy(message.userAgent, "Mozilla/test");
  Put(message.inlineTex, tex);
  Put(message.inlineMml, mml);
  Put(message.inlineName, name);
  return Bytes(message);
}

std::string LinkShim::NewHere(int32_t id, const std::string& tex) const {
  zlink::TNewMessage message;
  std::string bytes = New(id, tex);
  std::memcpy(&message, bytes.data(), sizeof message);
  message.dataAddress = m_HostAddress;
  message.dataAddress.sin_port = htons(static_cast<uint16_t>(m_nDataPort));
  message.controlAddress = m_HostAddress;
  message.controlAddress.sin_port = htons(static_cast<uint16_t>(m_nControlPort));
  return Bytes(message);
}

std::string LinkShim::SetWindow(int32_t id, unsigned long window, int width, int height) {
  zlink::TSetWindowMessage message{};
  message.header = {zlink::kSetWindow, sizeof message, id};
  message.window = static_cast<uint32_t>(window);
  message.width = width;
  message.height = height;
  return Bytes(message);
}

std::string LinkShim::Resize(int32_t id, int width, int height) {
  zlink::TResizeMessage message{};
  message.header = {zlink::kResize, sizeof message, id};
  message.width = width;
  message.height = height;
  return Bytes(message);
}

std::string LinkShim::StreamAsFile(int32_t id, const std::string& url, const std::string& local) {
  zlink::TStreamAsFileHead head{};
  head.header = {zlink::kStreamAsFile, static_cast<uint32_t>(sizeof head + local.size() + 1), id};
  Put(head.url, url);
  return Bytes(head) + local + std::string(1, '\0');
}

std::string LinkShim::Header(uint32_t type, int32_t id, uint32_t length) {
  zlink::THeader header{type, length, id};
  return Bytes(header);
}

std::string LinkShim::Reload(int32_t id, const std::string& tex) {
  return Header(zlink::kReloadDocument, id, static_cast<uint32_t>(12 + tex.size() + 1)) + tex + std::string(1, '\0');
}

std::string LinkShim::ReadData(int timeoutMs) { return zlink::AcceptRecord(m_nData, timeoutMs); }
std::string LinkShim::ReadControl(int timeoutMs) { return zlink::AcceptRecord(m_nControl, timeoutMs); }

std::string LinkShim::ReadStatus(int timeoutMs) {
  for (;;) {
    std::string record = ReadData(timeoutMs);
    if (record.empty()) return {};
    uint32_t type;
    std::memcpy(&type, record.data(), sizeof type);
    if (type == zlink::kStatus) return RecordText(record);
  }
}
}  // namespace ztest
