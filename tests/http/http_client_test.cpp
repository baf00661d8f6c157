#include "platform/http/http_client.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <string>
#include <thread>

#include "tests/core/table.h"
#include "tests/http/raw_socket.h"

namespace tonadex {
namespace {

using platform::HttpClient;
using platform::HttpLimits;
using platform::TransferError;
using std::chrono::milliseconds;
using test::RawServer;
using test::RawSocket;

constexpr std::size_t kMaxBody = 100'000;
// The time-outs of the program, for what must not run into one even on a machine that stands still
// for a moment; and short ones for what must.
constexpr HttpLimits kPatient{.maxBodyBytes = kMaxBody, .pumpInterval = milliseconds(5)};
constexpr HttpLimits kHasty{.connectTimeout = milliseconds(400),
                            .idleTimeout = milliseconds(250),
                            .dripTimeout = milliseconds(1500),
                            .leastBytesPerSecond = 1000,
                            .maxBodyBytes = kMaxBody,
                            .pumpInterval = milliseconds(5)};
constexpr const char* kSlow = "failed: El servidor no responde a tiempo";

std::string WithLength(std::size_t length, const std::string& body) {
  return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n" + body;
}

// What a Get gives: the body, or "failed: " and the message.
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
  for (const char c : WithLength(6, "gotera")) {
    client.Send(std::string(1, c));
    std::this_thread::sleep_for(milliseconds(8));
  }
}

void DripForEver(const RawSocket& client) {
  client.Send("HTTP/1.1 200 OK\r\n\r\n");
  while (client.Send("x")) {
    std::this_thread::sleep_for(milliseconds(8));
  }
}

// Says nothing more and waits for the client to leave.
RawServer::Answer Stalls(const std::string& start) {
  return [start](const RawSocket& client) {
    client.Send(start);
    client.ReadAll();
  };
}

void ExpectOutcome(const RawServer::Answer& answer, const std::string& want) {
  RawServer server(answer);
  HttpClient client({}, want == kSlow ? kHasty : kPatient);
  EXPECT_EQ(Outcome(client, server.Base() + "/x"), want);
  EXPECT_EQ(server.RequestLines().size(), 1u);
}

TEST(HttpClientGet, GivesTheWholeBodyOrFails) {
  for (const test::Row& row : test::Table("Replies")) {
    SCOPED_TRACE(row[0]);
    ExpectOutcome(Says(row[0]), row[1]);
  }
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) {
    bytes += static_cast<char>(byte);
  }
  ExpectOutcome(Says(WithLength(256, bytes)), bytes);
  ExpectOutcome(Says("HTTP/1.1 200 OK\r\n\r\n" + bytes), bytes);
  ExpectOutcome(Drip, "gotera");
}

TEST(HttpClientGet, LimitsTimeAndSize) {
  const std::string tooBig = "failed: La respuesta del servidor es demasiado grande";
  const std::string head = "HTTP/1.1 200 OK\r\n";
  const std::string largest(kMaxBody, 'x');
  ExpectOutcome(Says(WithLength(kMaxBody, largest)), largest);
  ExpectOutcome(Says(WithLength(kMaxBody + 1, "x")), tooBig);
  ExpectOutcome(Says(WithLength(std::size_t{1} << 60, "x")), tooBig);
  ExpectOutcome(SaysForEver(head + "\r\n", std::string(4096, 'x')), tooBig);
  ExpectOutcome(SaysForEver(head + "Transfer-Encoding: chunked\r\n\r\n", "4\r\nxxxx\r\n"), tooBig);
  ExpectOutcome(SaysForEver(head, "X-Otra: vez\r\n"),
                "failed: La respuesta del servidor no se entiende (header limit exceeded)");
  ExpectOutcome(Stalls(WithLength(10, "medio")), kSlow);
  ExpectOutcome(Stalls(""), kSlow);
  ExpectOutcome(DripForEver, kSlow);
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
    EXPECT_EQ(Outcome(client, row[0]), "failed: " + row[1]) << row[0];
    EXPECT_EQ(client.LastStatus(), 0);
  }
}

// A listener whose queue is full lets further clients wait.
TEST(HttpClientGet, GivesUpConnectingAfterItsTime) {
  std::uint16_t port = 0;
  const int listener = test::ListenOnLoopback(0, port);
  const RawSocket queued = RawSocket::Connect(port);
  HttpClient client({}, kHasty);
  EXPECT_EQ(Outcome(client, "http://127.0.0.1:" + std::to_string(port)), kSlow);
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
  HttpClient client(hooks, kPatient);
  EXPECT_EQ(client.Get(server.Base()), "gotera");
  EXPECT_GE(pumped, 5);
  EXPECT_EQ(last, 6u);
  EXPECT_EQ(total, 6u);
}

TEST(HttpClientGet, CanBeLeftThroughThePump) {
  RawServer server([](const RawSocket& client) { client.ReadAll(); });
  HttpClient client({.pump = [] { throw std::runtime_error("closed"); }, .progress = {}}, kPatient);
  EXPECT_THROW(client.Get(server.Base()), std::runtime_error);
}

}  // namespace
}  // namespace tonadex
