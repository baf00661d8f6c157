#include "platform/http/http_client.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <string>
#include <thread>

#include "tests/http/raw_socket.h"

namespace tonadex {
namespace {

using platform::HttpClient;
using platform::HttpLimits;
using platform::TransferError;
using std::chrono::milliseconds;
using test::RawServer;
using test::RawSocket;

constexpr milliseconds kIdle{250};
constexpr std::size_t kMaxBody = 100'000;
constexpr HttpLimits kShortLimits{milliseconds(400), kIdle, kMaxBody, milliseconds(5)};

std::string Http(const std::string& status, const std::string& fields, const std::string& body) {
  return "HTTP/1.1 " + status + "\r\n" + fields + "\r\n" + body;
}

std::string WithLength(const std::string& status, std::size_t length, const std::string& body) {
  return Http(status, "Content-Length: " + std::to_string(length) + "\r\n", body);
}

const std::string kChunked = Http("200 OK", "Transfer-Encoding: chunked\r\n", "");

// What a Get gives: the body, or "failed: " and the message.
std::string Outcome(HttpClient& client, const std::string& url) {
  try {
    return client.Get(url);
  } catch (const TransferError& error) {
    return std::string("failed: ") + error.what();
  }
}

struct ReplyCase {
  std::string name;
  RawServer::Answer answer;
  std::string want;
};

RawServer::Answer Says(const std::string& reply) {
  return [reply](const RawSocket& client) { client.Send(reply); };
}

// Says `piece` for as long as the client listens.
RawServer::Answer SaysForEver(const std::string& start, const std::string& piece) {
  return [start, piece](const RawSocket& client) {
    bool listening = client.Send(start);
    while (listening) {
      listening = client.Send(piece);
    }
  };
}

void Drip(const RawSocket& client) {
  for (const char c : WithLength("200 OK", 6, "gotera")) {
    client.Send(std::string(1, c));
    std::this_thread::sleep_for(milliseconds(8));
  }
}

void StallInBody(const RawSocket& client) {
  client.Send(WithLength("200 OK", 10, "medio"));
  client.ReadAll();
}

constexpr const char* kCut = "failed: La respuesta del servidor está cortada";
constexpr const char* kTooBig = "failed: La respuesta del servidor es demasiado grande";
constexpr const char* kSlow = "failed: El servidor no responde a tiempo";
constexpr const char* kSilent = "failed: El servidor ha cerrado la conexión sin responder";

std::string NotUnderstood(const std::string& why) {
  return "failed: La respuesta del servidor no se entiende (" + why + ")";
}

std::vector<ReplyCase> ReplyCases() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) {
    bytes += static_cast<char>(byte);
  }
  return {
      {"Length", Says(WithLength("200 OK", 256, bytes)), bytes},
      {"Chunks", Says(kChunked + "3\r\nuno\r\n100\r\n" + bytes + "\r\n0\r\n\r\n"), "uno" + bytes},
      {"EndOfConnection", Says(Http("200 OK", "", bytes)), bytes},
      {"OldVersion", Says("HTTP/1.0 200 OK\r\n\r\nviejo"), "viejo"},
      {"NotFoundIsText", Says(WithLength("404 Not Found", 5, "no ha")), "no ha"},
      {"RedirectIsText",
       Says(Http("302 Found", "Location: /otra\r\nContent-Length: 4\r\n", "alli")), "alli"},
      {"NoContent", Says(Http("204 No Content", "", "")), ""},
      {"MoreThanItsLength", Says(WithLength("200 OK", 3, "unodos")), "uno"},
      {"LessThanItsLength", Says(WithLength("200 OK", 9, "unodos")), kCut},
      {"CutInHeader", Says("HTTP/1.1 200 OK\r\nContent-Le"), kCut},
      {"CutInChunk", Says(kChunked + "9\r\nuno"), kCut},
      {"CutBehindChunk", Says(kChunked + "3\r\nuno\r\n"), kCut},
      {"Nothing", Says(""), kSilent},
      {"OtherProtocol", Says("SSH-2.0-OpenSSH_9.2\r\n\r\n"), NotUnderstood("bad version")},
      {"LengthIsNoNumber", Says(Http("200 OK", "Content-Length: -1\r\n", "x")),
       NotUnderstood("bad Content-Length")},
      {"ChunkSizeIsNoNumber", Says(kChunked + "zz\r\nuno\r\n"), NotUnderstood("bad chunk")},
      {"LargestBody", Says(WithLength("200 OK", kMaxBody, std::string(kMaxBody, 'x'))),
       std::string(kMaxBody, 'x')},
      {"LengthAboveLimit", Says(WithLength("200 OK", kMaxBody + 1, "x")), kTooBig},
      {"LengthBeyondMemory", Says(WithLength("200 OK", std::size_t{1} << 60, "x")), kTooBig},
      {"EndlessBody", SaysForEver(Http("200 OK", "", ""), std::string(4096, 'x')), kTooBig},
      {"EndlessChunks", SaysForEver(kChunked, "4\r\nxxxx\r\n"), kTooBig},
      {"EndlessHeader", SaysForEver("HTTP/1.1 200 OK\r\n", "X-Otra: vez\r\n"),
       NotUnderstood("header limit exceeded")},
      {"ByteForByte", Drip, "gotera"},
      {"StallsInBody", StallInBody, kSlow},
      {"NeverAnswers", [](const RawSocket& client) { client.ReadAll(); }, kSlow},
  };
}

TEST(HttpClientGet, GivesTheWholeBodyOrFails) {
  for (const ReplyCase& c : ReplyCases()) {
    RawServer server(c.answer);
    HttpClient client({}, kShortLimits);
    EXPECT_EQ(Outcome(client, server.Base() + "/x"), c.want) << c.name;
    EXPECT_EQ(server.RequestLines().size(), 1u) << c.name;
  }
}

TEST(HttpClientGet, SendsTargetsAsTyped) {
  RawServer server(Says(WithLength("200 OK", 0, "")));
  HttpClient client;
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"/listatonos.php?cadenadebusqueda=mi vals",
       "GET /listatonos.php?cadenadebusqueda=mi%20vals HTTP/1.1"},
      {"/x?a=\xF1 \xE1\x80\xFF+%41%&#'\"<>\\",
       "GET /x?a=\xF1%20\xE1\x80\xFF+%41%&#'\"<>\\ HTTP/1.1"},
      {"/x y\r\nHost: otro\r\n\r\n", "GET /x%20y%0D%0AHost:%20otro%0D%0A%0D%0A HTTP/1.1"},
      {std::string("/a\0b", 4), "GET /a%00b HTTP/1.1"},
      {"", "GET / HTTP/1.1"},
      {"?q=1", "GET /?q=1 HTTP/1.1"},
      {"/" + std::string(60'000, '\xF1'), "GET /" + std::string(60'000, '\xF1') + " HTTP/1.1"},
  };
  for (const auto& [typed, line] : cases) {
    client.Get(server.Base() + typed);
    EXPECT_EQ(server.RequestLines().back(), line);
    EXPECT_EQ(client.LastStatus(), 200);
  }
}

TEST(HttpClientGet, RefusesAddressesThatItCannotUse) {
  HttpClient client({}, kShortLimits);
  const std::string bad = "failed: La dirección del servidor no es válida";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"https://127.0.0.1/", "failed: La dirección del servidor debe empezar por http://"},
      {"127.0.0.1/", "failed: La dirección del servidor debe empezar por http://"},
      {"http://", bad},
      {"http:///x", bad},
      {"http://user@127.0.0.1/", bad},
      {"http://a\r\nb/", bad},
      {"http://127.0.0.1:1/", "failed: No hay ningún servidor en esa dirección"},
      {"http://[::1]:1/", "failed: No hay ningún servidor en esa dirección"},
      {"http://no.such.host.invalid/", "failed: No se encuentra el servidor"},
  };
  for (const auto& [url, want] : cases) {
    EXPECT_EQ(Outcome(client, url), want) << url;
    EXPECT_EQ(client.LastStatus(), 0);
  }
}

// A listener whose queue is full lets further clients wait.
TEST(HttpClientGet, GivesUpConnectingAfterItsTime) {
  std::uint16_t port = 0;
  const int listener = test::ListenOnLoopback(0, port);
  const RawSocket queued = RawSocket::Connect(port);
  HttpClient client({}, kShortLimits);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Outcome(client, "http://127.0.0.1:" + std::to_string(port)), kSlow);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  ::close(listener);
}

TEST(HttpClientGet, PumpsInTheCallersThreadAndTellsProgress) {
  RawServer server(Drip);
  const auto caller = std::this_thread::get_id();
  int pumped = 0;
  std::size_t last = 0;
  std::optional<std::uint64_t> total;
  platform::HttpCallbacks hooks;
  hooks.pump = [&] {
    EXPECT_EQ(std::this_thread::get_id(), caller);
    ++pumped;
  };
  hooks.progress = [&](std::size_t received, std::optional<std::uint64_t> all) {
    EXPECT_GE(received, last);
    last = received;
    total = all;
  };
  HttpClient client(hooks, kShortLimits);
  EXPECT_EQ(client.Get(server.Base()), "gotera");
  EXPECT_GE(pumped, 5);
  EXPECT_EQ(last, 6u);
  EXPECT_EQ(total, 6u);
}

TEST(HttpClientGet, CanBeLeftThroughThePump) {
  RawServer server([](const RawSocket& client) { client.ReadAll(); });
  HttpClient client({.pump = [] { throw std::runtime_error("closed"); }, .progress = {}},
                    kShortLimits);
  EXPECT_THROW(client.Get(server.Base()), std::runtime_error);
}

}  // namespace
}  // namespace tonadex
