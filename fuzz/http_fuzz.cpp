#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "core/windows1252.h"
#include "fuzz/require.h"
#include "net/server_address.h"
#include "platform/http/http_client.h"
#include "platform/http/url.h"
#include "server/handler.h"
#include "server/http_server.h"
#include "tests/http/raw_socket.h"
#include "tests/support/temp_folder.h"

// The HTTP client over real connections. The first byte selects whether the rest is a whole reply,
// the body of a valid reply, the target of a request, or a server's URL.
namespace {

using namespace tonadex;

constexpr std::size_t kMaxBody = 2048;

// Answers every request with `reply`, sent in two pieces split at `cut`.
class Talker {
 public:
  void Say(std::string reply, std::size_t cut) {
    const std::lock_guard lock(mutex_);
    reply_ = std::move(reply);
    cut_ = std::min(cut, reply_.size());
  }
  std::string Base() const { return server_.Base(); }

 private:
  void Answer(const test::RawSocket& client) {
    const std::lock_guard lock(mutex_);
    client.Send(std::string_view(reply_).substr(0, cut_));
    client.Send(std::string_view(reply_).substr(cut_));
  }

  std::mutex mutex_;
  std::string reply_;
  std::size_t cut_ = 0;
  test::RawServer server_{[this](const test::RawSocket& client) { Answer(client); }};
};

struct Outcome {
  int status = 0;
  std::string text;  // body or failure

  friend bool operator==(const Outcome&, const Outcome&) = default;
};

Outcome Get(const std::string& url) {
  platform::HttpLimits limits;
  limits.maxBodyBytes = kMaxBody;
  platform::HttpClient client({}, limits);
  try {
    std::string body = client.Get(url);
    Require(client.LastStatus() > 0 && body.size() <= kMaxBody, "a reply beyond its bounds");
    return {client.LastStatus(), std::move(body)};
  } catch (const net::TransferError& error) {
    Require(client.LastStatus() == 0, "a failure with a status");
    Require(*error.what() != '\0' && core::IsUtf8(error.what()), "a failure without words");
    return {0, error.what()};
  }
}

Outcome GetReply(const std::string& reply, std::size_t cut) {
  static Talker talker;
  talker.Say(reply, cut);
  return Get(talker.Base() + "/x");
}

void CheckAnyReply(const std::string& bytes, std::size_t cut) {
  const Outcome whole = GetReply(bytes, bytes.size());
  Require(whole.status == 0 || whole.text.size() <= bytes.size(), "a body out of nothing");
  const Outcome pieces = GetReply(bytes, cut);
  // A reply that is both truncated and malformed may fail with either message.
  Require(pieces == whole || (pieces.status == 0 && whole.status == 0),
          "the pieces of a reply make a difference");
}

std::string Chunk(std::string_view bytes) {
  constexpr std::string_view kHex = "0123456789abcdef";
  const std::size_t size = bytes.size();
  std::string chunk = {kHex[size >> 12 & 15], kHex[size >> 8 & 15], kHex[size >> 4 & 15],
                       kHex[size & 15]};
  return chunk.append("\r\n").append(bytes).append("\r\n");
}

// The three ways to send a body.
void CheckBody(const std::string& body, std::size_t cut) {
  const std::string_view all = body;
  std::string chunks;
  for (const std::string_view piece : {all.substr(0, cut), all.substr(cut)}) {
    chunks += piece.empty() ? "" : Chunk(piece);
  }
  const std::string replies[] = {
      "HTTP/1.0 200 OK\r\n\r\n" + body,
      "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body,
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + chunks + "0\r\n\r\n"};
  for (const std::string& reply : replies) {
    const Outcome outcome = GetReply(reply, reply.size() - (body.size() - cut));
    Require(body.size() > kMaxBody ? outcome.status == 0 : outcome == Outcome{200, body},
            "another body than the one that was sent");
  }
}

// The typed target arrives at the server.
void CheckTarget(const std::string& typed) {
  static std::mutex mutex;
  static std::string seen;
  server::ServerOptions options;
  options.threads = 1;
  static server::HttpServer server(options, [](const server::Request& request) {
    const std::lock_guard lock(mutex);
    seen = server::UndoEscapes(request.target);
    return server::TextReply(200, "");
  });
  const Outcome outcome = Get("http://127.0.0.1:" + std::to_string(server.Port()) + "/" + typed);
  const std::lock_guard lock(mutex);
  Require(outcome == Outcome{200, ""}, "a target that the server refuses");
  Require(seen == server::UndoEscapes("/" + typed), "another target than the one typed");
}

void CheckAddress(const std::string& bytes) {
  static const test::TempFolder folder;
  folder.Write("servidor.txt", bytes);
  const std::string base = net::ConfiguredServer({}, folder.path());
  Require(base.empty() || (base.front() != ' ' && base.back() != ' ' && base.back() != '/'),
          "an address with something around it");
  Require(net::ConfiguredServer(base, {}) == base, "an address that changes");
  if (core::IsUtf8(bytes) && !bytes.starts_with("\xEF\xBB\xBF")) {
    folder.Write("servidor.txt", "\xEF\xBB\xBF" + bytes);
    Require(net::ConfiguredServer({}, folder.path()) == base, "a mark that makes a difference");
  }
  for (const std::string& address : {base, "http://" + base}) {
    try {
      const platform::Url url = platform::ParseUrl(address + "/a b");
      Require(!url.host.empty() && !url.port.empty(), "an address without host or port");
      Require(url.authority.find(url.host) != std::string::npos, "another host");
      Require(url.target.starts_with('/') && url.target.ends_with("/a%20b"), "another target");
      Require(url.target.find_first_of(std::string_view(" \r\n\0", 4)) == std::string::npos,
              "a target that breaks the request line");
    } catch (const net::TransferError&) {
      continue;
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) {
    return 0;
  }
  const std::string bytes(data + 2, data + size);
  const std::size_t cut = bytes.empty() ? 0 : data[1] % bytes.size();
  switch (data[0] % 8) {
    case 0:
      CheckBody(bytes, cut);
      break;
    case 1:
      CheckTarget(bytes);
      break;
    case 2:
      CheckAddress(bytes);
      break;
    default:
      CheckAnyReply(bytes, cut);
  }
  return 0;
}
