#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "tests/http/raw_socket.h"

// Sends bytes to a server and splits its replies.
namespace tonadex::test {

// Consecutive replies, each as "status body" (a reply with an incomplete body ends in
// "[cut]").
inline std::vector<std::string> SplitReplies(std::string text) {
  std::vector<std::string> replies;
  while (!text.empty()) {
    const std::size_t head = text.find("\r\n\r\n");
    const std::size_t length = text.find("Content-Length: ");
    if (head == text.npos || length > head) {
      replies.push_back("[no reply] " + text);
      break;
    }
    const std::size_t size = std::strtoul(text.c_str() + length + 16, nullptr, 10);
    const std::string body = text.substr(head + 4, size);
    replies.push_back(text.substr(9, 3) + " " + body + (body.size() < size ? "[cut]" : ""));
    text.erase(0, head + 4 + body.size());
  }
  return replies;
}

// Sends the bytes, shuts down the sending side and returns all replies.
inline std::vector<std::string> Converse(std::uint16_t port, const std::string& bytes) {
  const RawSocket client = RawSocket::Connect(port);
  client.Send(bytes);
  client.EndSending();
  return SplitReplies(client.ReadAll());
}

// The reply to a GET as "status body"; "" if none came.
inline std::string Ask(std::uint16_t port, const std::string& target,
                       const std::string& fields = {}) {
  const RawSocket client = RawSocket::Connect(port);
  client.Send("GET " + target + " HTTP/1.1\r\nConnection: close\r\n" + fields + "\r\n");
  const auto replies = SplitReplies(client.ReadAll());
  return replies.empty() ? "" : replies.front();
}

inline std::string Joined(const std::vector<std::shared_ptr<const std::string>>& texts) {
  std::string joined;
  for (const auto& text : texts) {
    joined += *text;
  }
  return joined;
}

}  // namespace tonadex::test
