#include "platform/http/http_client.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <string>
#include <thread>

#include "core/text.h"
#include "platform/http/background_get.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/http/raw_socket.h"
#include "tests/support/eventually.h"

namespace tonadex::http_client_test {

using net::TransferError;
using platform::HttpClient;
using platform::HttpLimits;
using std::chrono::milliseconds;
using test::RawServer;
using test::RawSocket;

constexpr std::size_t kMaxBody = 100'000;
// kPatient has the program's time-outs, for requests that must not time out even on a busy machine;
// kHasty short ones, for requests that must.
constexpr HttpLimits kPatient{.maxBodyBytes = kMaxBody, .pumpInterval = milliseconds(5)};
constexpr HttpLimits kHasty{.connectTimeout = milliseconds(400),
                            .idleTimeout = milliseconds(250),
                            .totalTimeout = milliseconds(1500),
                            .maxBodyBytes = kMaxBody,
                            .pumpInterval = milliseconds(5)};
constexpr const char* kSlow = "failed: El servidor no responde a tiempo";
constexpr const char* kLate = "failed: El servidor tarda demasiado en dar la respuesta entera";
constexpr const char* kTooBig = "failed: La respuesta del servidor es demasiado grande";
const std::string kChunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
const std::string kInterim = "HTTP/1.1 102 Processing\r\n\r\n";

std::string WithLength(std::size_t length, const std::string& body) {
  return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n" + body;
}

// The result of Get: the body, or "failed: " and the message.
std::string Outcome(HttpClient& client, const std::string& url) {
  try {
    return client.Get(url);
  } catch (const TransferError& error) {
    return std::string("failed: ") + error.what();
  }
}

RawServer::Answer Says(const std::string& reply) {
  return [reply](const RawSocket& client) { client.Send(reply); };
}

// Sends `piece` until the client closes the connection.
RawServer::Answer SaysForEver(const std::string& start, const std::string& piece) {
  return [start, piece](const RawSocket& client) {
    bool listening = client.Send(start);
    while (listening) {
      listening = client.Send(piece);
    }
  };
}

// Sends the reply byte by byte, slowly, until the client closes the connection.
RawServer::Answer Drips(const std::string& reply) {
  return [reply](const RawSocket& client) {
    for (std::size_t at = 0; at < reply.size() && client.Send(reply.substr(at, 1)); ++at) {
      std::this_thread::sleep_for(milliseconds(8));
    }
  };
}

// Sends nothing more and waits for the client to close the connection.
RawServer::Answer Stalls(const std::string& start) {
  return [start](const RawSocket& client) {
    client.Send(start);
    client.ReadAll();
  };
}

void ExpectOutcome(const RawServer::Answer& answer, const std::string& want) {
  RawServer server(answer);
  HttpClient client({}, want == kSlow || want == kLate ? kHasty : kPatient);
  EXPECT_EQ(Outcome(client, server.Base() + "/x"), want);
  EXPECT_EQ(server.RequestLines().size(), 1u);
}

TEST(HttpClientGet, GivesTheWholeBodyOrFails) {
  for (const test::Row& row : test::Table("Replies")) {
    SCOPED_TRACE(row[0]);
    ExpectOutcome(Says(row[0]), row[1]);
  }
  const std::string bytes = test::AllBytes();
  ExpectOutcome(Says(WithLength(256, bytes)), bytes);
  ExpectOutcome(Says("HTTP/1.1 200 OK\r\n\r\n" + bytes), bytes);
  ExpectOutcome(Drips(WithLength(6, "gotera")), "gotera");
}

TEST(HttpClientGet, LimitsTimeAndSize) {
  const std::string head = "HTTP/1.1 200 OK\r\n";
  const std::string largest(kMaxBody, 'x');
  const std::string much(4096, 'x');
  ExpectOutcome(Says(WithLength(kMaxBody, largest)), largest);
  ExpectOutcome(Says(WithLength(kMaxBody + 1, "x")), kTooBig);
  ExpectOutcome(Says(WithLength(std::size_t{1} << 60, "x")), kTooBig);
  ExpectOutcome(SaysForEver(head + "\r\n", much), kTooBig);
  ExpectOutcome(SaysForEver(kChunked, "4\r\nxxxx\r\n"), kTooBig);
  ExpectOutcome(SaysForEver(kChunked + "4;", much), kTooBig);
  ExpectOutcome(SaysForEver(kChunked + "0\r\n", "X-Otra: " + much + "\r\n"), kTooBig);
  ExpectOutcome(SaysForEver(head, "X-Otra: vez\r\n"),
                "failed: La respuesta del servidor no se entiende (cabecera demasiado larga)");
  ExpectOutcome(Stalls(WithLength(10, "medio")), kSlow);
  ExpectOutcome(Stalls(""), kSlow);
  ExpectOutcome(Drips(head + "\r\n" + std::string(kMaxBody, 'x')), kLate);
  ExpectOutcome(SaysForEver("", kInterim), kLate);
}

TEST(HttpClientGet, SendsTargetsAsTyped) {
  RawServer server(Says(WithLength(0, "")));
  HttpClient client;
  for (const test::Row& row : test::Table("Targets")) {
    client.Get(server.Base() + row[0]);
    EXPECT_EQ(server.RequestLines().back(), "GET " + row[1] + " HTTP/1.1");
    EXPECT_EQ(client.LastStatus(), 200);
  }
  const std::string longest = "/" + std::string(60'000, '\xF1');
  client.Get(server.Base() + longest);
  EXPECT_EQ(server.RequestLines().back(), "GET " + longest + " HTTP/1.1");
}

TEST(HttpClientGet, RefusesAddressesThatItCannotUse) {
  HttpClient client({}, kPatient);
  for (const test::Row& row : test::Table("Addresses")) {
    for (const std::string_view address : core::SplitText(row[0], ' ')) {
      EXPECT_EQ(Outcome(client, std::string(address)), "failed: " + row[1]) << address;
      EXPECT_EQ(client.LastStatus(), 0);
    }
  }
}

// A listener whose backlog is full, so that further connections have to wait.
TEST(HttpClientGet, GivesUpConnectingAfterItsTime) {
  std::uint16_t port = 0;
  const int listener = test::ListenOnLoopback(0, port);
  const RawSocket queued = RawSocket::Connect(port);
  HttpClient client({}, kHasty);
  EXPECT_EQ(Outcome(client, "http://127.0.0.1:" + std::to_string(port)), kSlow);
  ::close(listener);
}

TEST(HttpClientGet, PumpsInTheCallersThreadAndTellsProgress) {
  RawServer server(Drips(WithLength(6, "gotera")));
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
  HttpClient client(hooks, kPatient);
  EXPECT_EQ(client.Get(server.Base()), "gotera");
  EXPECT_GE(pumped, 5);
  EXPECT_EQ(last, 6u);
  EXPECT_EQ(total, 6u);
}

// Cancels Get at the third call of the pump, or at the first one if `interval` is 0; returns its
// outcome.
std::string LeftThroughThePump(const std::string& url, milliseconds interval) {
  int left = interval.count() == 0 ? 1 : 3;
  platform::HttpCallbacks hooks;
  hooks.pump = [&left] { --left == 0 ? throw TransferError("dejado") : void(); };
  HttpLimits limits;
  limits.pumpInterval = interval;
  HttpClient client(hooks, limits);
  return Outcome(client, url);
}

TEST(HttpClientGet, IsLeftThroughThePumpAtEveryStage) {
  const auto start = std::chrono::steady_clock::now();
  const milliseconds interval(5);
  {  // during the name look-up
    RawServer server(Says(WithLength(0, "")));
    EXPECT_EQ(LeftThroughThePump(server.Base(), milliseconds(0)), "failed: dejado");
    EXPECT_TRUE(server.RequestLines().empty());
  }
  std::uint16_t port = 0;
  const int listener = test::ListenOnLoopback(0, port);
  const std::string base = "http://127.0.0.1:" + std::to_string(port) + "/";
  // The server does not read: first sending blocks, then the backlog is full.
  EXPECT_EQ(LeftThroughThePump(base + std::string(20'000'000, 'x'), interval), "failed: dejado");
  EXPECT_EQ(LeftThroughThePump(base, interval), "failed: dejado");
  ::close(listener);
  for (const RawServer::Answer& answer :
       {Stalls(""), Stalls(WithLength(10, "medio")), SaysForEver("", kInterim),
        SaysForEver(kChunked, "1;mucho=nada\r\nx\r\n")}) {
    RawServer server(answer);
    EXPECT_EQ(LeftThroughThePump(server.Base(), interval), "failed: dejado");
    EXPECT_EQ(server.RequestLines().size(), 1u);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
}

// Without cancellation, a silent server would hold the request for half a minute.
TEST(HttpBackgroundGet, RunsBesideItsCallerAndEndsWithIt) {
  RawServer server([](const RawSocket& client) {
    std::this_thread::sleep_for(milliseconds(300));
    client.Send(WithLength(2, "ab"));
  });
  RawServer silent([](const RawSocket& client) { client.ReadAll(); });
  const auto start = std::chrono::steady_clock::now();
  platform::HttpBackgroundGet request;
  EXPECT_FALSE(request.Take());
  request.Start(silent.Base() + "/");
  EXPECT_FALSE(request.Take());
  request.Start(server.Base() + "/");
  std::optional<net::BackgroundGet::Reply> reply;
  ASSERT_TRUE(test::Eventually([&] { return (reply = request.Take()).has_value(); }));
  EXPECT_TRUE(reply->came);
  EXPECT_EQ(reply->body, "ab");
  EXPECT_FALSE(request.Take());
  {
    platform::HttpBackgroundGet forgotten;
    forgotten.Start(silent.Base() + "/");
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(25));
}

}  // namespace tonadex::http_client_test
