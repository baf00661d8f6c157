#include "server/http_server.h"
#include "server/end_signal.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <atomic>
#include <csignal>
#include <deque>
#include <future>
#include <string>
#include <thread>

#include "core/windows1252.h"
#include "server/file_system.h"
#include "server/shelf.h"
#include "tests/core/table.h"
#include "tests/server/ask.h"
#include "tests/support/eventually.h"
#include "tests/support/temp_folder.h"

namespace tonadex::server::http_server_test {

using std::string;
using std::chrono::milliseconds;
using test::Ask;
using test::Converse;
using test::RawSocket;

// Replies with the target and the body of the request.
Reply Echo(const Request& request) {
  return TextReply(200, request.target + (request.body.empty() ? "" : " ") + request.body);
}

constexpr std::chrono::seconds kNotForEver{30};

string Refusal(const char* status) {
  return string(status) + " La petici\xF3n no se entiende.";
}

string Get(const string& target, const string& fields = "Host: x\r\n") {
  return "GET " + target + " HTTP/1.1\r\n" + fields + "\r\n";
}

// The replies to raw bytes, separated by " & "; fails if the server does not answer afterwards.
string Replies(const HttpServer& server, const string& request) {
  string replies;
  for (const string& reply : Converse(server.Port(), request)) {
    replies += (replies.empty() ? "" : " & ") + reply;
  }
  EXPECT_EQ(Ask(server.Port(), "/alive"), "200 /alive");
  return replies;
}

TEST(HttpServer, AnswersOrRefusesAnyRequest) {
  HttpServer server({}, Echo);
  for (const test::Row& row : test::Table("Requests")) {
    for (const std::string_view request : core::SplitText(row[0], ';')) {
      EXPECT_EQ(Replies(server, core::FromOutside(request)), core::FromOutside(row[1])) << request;
    }
  }
  const string longest = "/" + string(kMaxRequestLineBytes - 20, 'x');
  const std::pair<string, string> cases[] = {
      {Get(longest), "200 " + longest},
      {Get(longest + string(20, 'x')), Refusal("414")},
      {string(kMaxRequestLineBytes * 4, 'x'), Refusal("414")},
      {Get("/x", "A: " + string(kMaxFieldBytes, 'x') + "\r\n"), Refusal("431")},
      {"GET / HTTP/1.1\r\n" + string(kMaxFieldBytes * 4, 'x'), Refusal("431")}};
  for (const auto& [request, replies] : cases) {
    EXPECT_EQ(Replies(server, request), replies) << request.substr(0, 80);
  }
}

TEST(HttpServer, AnswersHeadWithoutTheBodyAndSaysHowLongItMayBeKept) {
  HttpServer server({}, [](const Request& request) {
    Reply reply = Echo(request);
    reply.maxAgeSeconds = request.target == "/kept" ? 60 : 0;
    return reply;
  });
  const auto head = [&](const string& target) {
    const RawSocket client = RawSocket::Connect(server.Port());
    client.Send("HEAD " + target + " HTTP/1.1\r\nConnection: close\r\n\r\n");
    return client.ReadAll();
  };
  EXPECT_NE(head("/kept").find("\r\nCache-Control: max-age=60\r\n"), string::npos);
  const string reply = head("/abc");
  EXPECT_NE(reply.find("Content-Length: 4\r\n"), reply.npos);
  EXPECT_EQ(reply.substr(reply.size() - 4), "\r\n\r\n");
  EXPECT_NE(reply.find("\r\nCache-Control: no-store\r\n"), reply.npos);
}

TEST(HttpServer, TakesARequestByteByByteAndTellsAClientThatWaitsToSendTheBody) {
  HttpServer server({}, Echo);
  const RawSocket client = RawSocket::Connect(server.Port());
  for (const char byte :
       string("POST /x HTTP/1.1\r\nContent-Length: 2\r\nExpect: 100-continue\r\n\r\n")) {
    client.Send(string(1, byte));
    std::this_thread::sleep_for(milliseconds(2));
  }
  EXPECT_EQ(client.ReadUntil("\r\n\r\n"), "HTTP/1.1 100 Continue\r\n\r\n");
  client.Send("ab");
  EXPECT_TRUE(client.ReadUntil("/x ab").ends_with("/x ab"));
}

TEST(HttpServer, TurnsAnExceptionIntoAReply) {
  HttpServer server({}, [](const Request&) -> Reply { throw std::runtime_error("x"); });
  EXPECT_EQ(Ask(server.Port(), "/"), Refusal("500"));
}

TEST(HttpServer, LetsGoOfSlowClientsWhileOthersAreServed) {
  const string large(std::size_t{64} << 20, 'x');
  std::promise<void> gaveUp;
  ServerOptions options;
  options.slowClient = milliseconds(1000);
  options.served = [&](const Exchange& exchange) {
    exchange.target == "/large" ? gaveUp.set_value() : void();
  };
  HttpServer server(options, [&](const Request& request) {
    return TextReply(200, request.target == "/large" ? large : "ok");
  });
  const RawSocket reader = RawSocket::Connect(server.Port());
  reader.Send(Get("/large"));  // does not read the reply
  const RawSocket silent = RawSocket::Connect(server.Port());
  const RawSocket writer = RawSocket::Connect(server.Port());
  const auto start = Clock::now();
  while (writer.Send("x") && Clock::now() - start < kNotForEver) {
    std::this_thread::sleep_for(milliseconds(20));
  }
  EXPECT_LT(Clock::now() - start, kNotForEver);
  EXPECT_EQ(silent.ReadAll(), "");
  EXPECT_EQ(Ask(server.Port(), "/"), "200 ok");
  ASSERT_EQ(gaveUp.get_future().wait_for(kNotForEver), std::future_status::ready);
  EXPECT_LT(reader.ReadAll().size(), large.size());
}

TEST(HttpServer, BoundsTheMemoryOfRepliesThatNobodyReads) {
  constexpr std::size_t kLarge = std::size_t{16} << 20;
  const auto shared = std::make_shared<const string>(kLarge, 'x');
  ServerOptions options;
  options.maxReplyBytes = 2 * kLarge + kLarge / 2;
  HttpServer server(options, [&](const Request& request) {
    Reply reply = TextReply(200, request.target == "/own" ? string(kLarge, 'x') : "small");
    if (request.target == "/shared") {
      reply.body = {shared, shared};
    }
    return reply;
  });
  const auto waitFor = [&](const string& status) {
    EXPECT_TRUE(test::Eventually([&] { return Ask(server.Port(), "/own").starts_with(status); }));
  };
  {
    std::deque<RawSocket> readers;  // do not read the replies
    for (int i = 0; i < 20; ++i) {
      readers.push_back(RawSocket::Connect(server.Port()));
      readers.back().Send(Get(i == 0 ? "/own" : "/shared"));
      ASSERT_TRUE(readers.back().ReadUntil("\r\n\r\n").starts_with("HTTP/1.1 200 "));
    }
    waitFor("503");
    EXPECT_EQ(Ask(server.Port(), "/shared").size(), 2 * kLarge + 4);  // a shared body counts once
    EXPECT_EQ(Ask(server.Port(), "/"), "200 small");
  }
  waitFor("200");
}

TEST(HttpServer, SaysWhenNobodyWaitsForAReply) {
  std::promise<void> asked, reset, stopped;
  const auto wait = [](const Request& request, std::promise<void>& seen) {
    test::Eventually(request.abandoned) ? seen.set_value() : void();
  };
  HttpServer server({}, [&](const Request& request) {
    if (request.target == "/half") {
      return TextReply(200, request.abandoned() ? "gone" : "waits");
    }
    request.target == "/stop" ? asked.set_value() : void();
    wait(request, request.target == "/stop" ? stopped : reset);
    return Echo(request);
  });
  EXPECT_EQ(Converse(server.Port(), Get("/half")).at(0), "200 waits");
  {
    const RawSocket client = RawSocket::Connect(server.Port());
    client.Send(Get("/reset"));
    const linger hard{1, 0};
    ::setsockopt(client.handle(), SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
    std::this_thread::sleep_for(milliseconds(50));
  }
  EXPECT_EQ(reset.get_future().wait_for(kNotForEver), std::future_status::ready);
  const RawSocket client = RawSocket::Connect(server.Port());
  client.Send(Get("/stop"));
  asked.get_future().wait();
  server.Stop();
  EXPECT_EQ(stopped.get_future().wait_for(milliseconds(0)), std::future_status::ready);
}

TEST(WaitForEndSignal, ReloadsOnceForManySignalsAndEndsWithoutWaitingForIt) {
  std::atomic<int> reloads{0};
  std::atomic<bool> release{false};
  std::promise<void> ready;
  const auto reload = [&](const std::stop_token& stop) {
    const int number = ++reloads;
    test::Eventually([&] { return stop.stop_requested() || (number == 1 && release); });
  };
  std::thread waiter([&] { WaitForEndSignal([&] { ready.set_value(); }, reload); });
  ready.get_future().wait();
  const auto start = Clock::now();
  std::raise(SIGHUP);
  test::Eventually([&] { return reloads > 0; });
  for (int i = 0; i < 50; ++i) {
    std::raise(SIGHUP);
  }
  std::this_thread::sleep_for(milliseconds(100));
  release = true;
  test::Eventually([&] { return reloads > 1; });
  std::raise(SIGTERM);
  waiter.join();
  EXPECT_EQ(reloads, 2);
  EXPECT_LT(Clock::now() - start, kNotForEver);
}

// The number of clients that are served, while the others get a 503.
int Served(const std::deque<RawSocket>& clients) {
  int served = 0, busy = 0;
  for (const RawSocket& client : clients) {
    client.Send(Get("/x"));
  }
  for (const RawSocket& client : clients) {
    const string reply = client.ReadUntil("\r\n\r\n");
    served += reply.starts_with("HTTP/1.1 200 ");
    busy += reply.starts_with("HTTP/1.1 503 ");
  }
  EXPECT_EQ(served + busy, int(clients.size()));
  return served;
}

TEST(HttpServer, ServesSoManyConnectionsOfAnAddressAndInAll) {
  constexpr int kClients = 2000;
  RaiseOpenFileLimit();
  rlimit limit{};
  ::getrlimit(RLIMIT_NOFILE, &limit);
  if (limit.rlim_cur < 4 * kClients + 200) {  // two sockets per connection
    GTEST_SKIP() << "this system does not allow enough open files";
  }
  ServerOptions options;
  options.slowClient = kNotForEver;  // the idle ones wait until all others are connected
  HttpServer server(options, Echo);
  {
    std::deque<RawSocket> idle, one, others;
    for (int i = 0; i < kClients; ++i) {
      idle.push_back(RawSocket::Connect(server.Port(), 2));
    }
    one.push_back(RawSocket::Connect(server.Port()));
    EXPECT_EQ(Served(one), 1);
    for (int i = 0; i < kClients; ++i) {
      others.push_back(RawSocket::Connect(server.Port(), std::uint8_t(3 + i % 100)));
    }
    EXPECT_EQ(Served(others), kMaxConnections - kMaxConnectionsOfAddress - 1);
    EXPECT_EQ(Served(idle), kMaxConnectionsOfAddress);
  }
  EXPECT_TRUE(test::Eventually([&] { return Ask(server.Port(), "/x") == "200 /x"; }));
}

// All connections come from the proxy, so each client's running requests are counted.
TEST(HttpServer, LimitsTheRequestsOfAClientBehindTheProxy) {
  std::promise<void> release;
  const std::shared_future<void> released(release.get_future());
  std::atomic<int> waiting{0};
  ServerOptions options;
  options.behindProxy = true;
  options.maxConnectionsOfAddress = 2;
  HttpServer server(options, [&](const Request& request) {
    if (request.target == "/wait") {
      ++waiting;
      released.wait();
    }
    return Echo(request);
  });
  const auto get = [&](const string& target, const string& client) {
    return Ask(server.Port(), target, "X-Forwarded-For: " + client + "\r\n").substr(0, 3);
  };
  auto first = std::async(std::launch::async, get, "/wait", "9.9.9.1");
  auto second = std::async(std::launch::async, get, "/wait", "9.9.9.1");
  test::Eventually([&] { return waiting == 2; });
  EXPECT_EQ(get("/x", "9.9.9.1"), "503");
  EXPECT_EQ(get("/x", "9.9.9.2"), "200");
  release.set_value();
  EXPECT_EQ(first.get() + second.get(), "200200");
  EXPECT_EQ(get("/x", "9.9.9.1"), "200");
}

TEST(HttpServer, LimitsUploadsByTheAddressThatTheProxyWrote) {
  const test::TempFolder folder;
  Shelf shelf(folder.path(), ShelfAccess::kReadWrite, 1);
  const auto handler = [&](const Request& request) { return Handle(request, shelf); };
  ServerOptions options;
  HttpServer open(options, handler);
  options.behindProxy = true;
  HttpServer proxied(options, handler);
  for (const test::Row& row : test::Table("Forwarded uploads")) {
    const HttpServer& server = row[0] == "yes" ? proxied : open;
    const string fields = row[1].empty() ? "" : "X-Forwarded-For: " + row[1] + "\r\n";
    EXPECT_EQ(Ask(server.Port(), "/uploadertonos.php?filename=&contents=", fields).substr(0, 3),
              row[2])
        << row[1];
  }
}

}  // namespace tonadex::server::http_server_test
