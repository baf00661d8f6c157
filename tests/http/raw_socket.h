#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

// Loopback sockets that send exactly the bytes of a test.
namespace tonadex::test {

class RawSocket {
 public:
  explicit RawSocket(int handle) : handle_(handle) {}
  RawSocket(RawSocket&& other) noexcept : handle_(other.handle_) { other.handle_ = -1; }
  ~RawSocket();

  // Connects from 127.0.0.`host`.
  static RawSocket Connect(std::uint16_t port, std::uint8_t host = 1);

  // False once the other side has closed the connection.
  bool Send(std::string_view bytes) const;
  void EndSending() const;
  // Reads until `end` has arrived, the other side closes, or nothing arrives for a minute.
  std::string ReadUntil(std::string_view end) const;
  std::string ReadAll() const { return ReadUntil({}); }
  int handle() const { return handle_; }

 private:
  int handle_;
};

// Accepts connections one after the other, reads a request from each and calls `answer`.
class RawServer {
 public:
  using Answer = std::function<void(const RawSocket& client)>;
  explicit RawServer(Answer answer);
  ~RawServer();

  std::string Base() const { return "http://127.0.0.1:" + std::to_string(port_); }
  // The request lines received so far.
  std::vector<std::string> RequestLines();

 private:
  void Run();

  Answer answer_;
  std::uint16_t port_ = 0;
  int listener_;
  std::atomic<bool> ending_{false};
  std::mutex mutex_;
  std::vector<std::string> lines_;
  std::thread thread_;
};

// Listens with this `backlog`; returns the descriptor and sets the port.
int ListenOnLoopback(int backlog, std::uint16_t& port);

}  // namespace tonadex::test
