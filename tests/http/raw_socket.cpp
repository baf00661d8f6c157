#include "tests/http/raw_socket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <stdexcept>

namespace tonadex::test {
namespace {

constexpr int kPatienceMs = 60'000;
constexpr int kLookMs = 20;

sockaddr_in Loopback(std::uint16_t port, std::uint8_t host = 1) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK - 1 + host);
  return address;
}

const sockaddr* Plain(const sockaddr_in& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

bool Readable(int handle, int milliseconds) {
  pollfd look{handle, POLLIN, 0};
  int ready = 0;
  do {
    ready = ::poll(&look, 1, milliseconds);
  } while (ready < 0 && errno == EINTR);  // libFuzzer sets alarms
  return ready > 0;
}

}  // namespace

RawSocket::~RawSocket() {
  if (handle_ >= 0) {
    ::close(handle_);
  }
}

RawSocket RawSocket::Connect(std::uint16_t port, std::uint8_t host) {
  RawSocket client(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const sockaddr_in from = Loopback(0, host);
  const sockaddr_in address = Loopback(port);
  if (::bind(client.handle_, Plain(from), sizeof from) != 0 ||
      ::connect(client.handle_, Plain(address), sizeof address) != 0) {
    throw std::runtime_error("cannot connect");
  }
  return client;
}

bool RawSocket::Send(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(handle_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) {
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

void RawSocket::EndSending() const {
  ::shutdown(handle_, SHUT_WR);
}

std::string RawSocket::ReadUntil(std::string_view end) const {
  std::string text;
  std::array<char, 65536> piece;
  while ((end.empty() || text.find(end) == text.npos) && Readable(handle_, kPatienceMs)) {
    const ssize_t count = ::recv(handle_, piece.data(), piece.size(), 0);
    if (count <= 0) {
      break;
    }
    text.append(piece.data(), static_cast<std::size_t>(count));
  }
  return text;
}

int ListenOnLoopback(int backlog, std::uint16_t& port) {
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = Loopback(0);
  socklen_t size = sizeof address;
  if (::bind(listener, Plain(address), sizeof address) != 0 || ::listen(listener, backlog) != 0 ||
      ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("cannot listen");
  }
  port = ntohs(address.sin_port);
  return listener;
}

RawServer::RawServer(Answer answer)
    : answer_(std::move(answer)),
      listener_(ListenOnLoopback(64, port_)),
      thread_([this] { Run(); }) {}

RawServer::~RawServer() {
  ending_ = true;
  thread_.join();
  ::close(listener_);
}

std::vector<std::string> RawServer::RequestLines() {
  const std::lock_guard lock(mutex_);
  return lines_;
}

void RawServer::Run() {
  while (!ending_) {
    if (!Readable(listener_, kLookMs)) {
      continue;
    }
    const RawSocket client(::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC));
    const std::string request = client.ReadUntil("\r\n\r\n");
    {
      const std::lock_guard lock(mutex_);
      lines_.push_back(request.substr(0, request.find("\r\n")));
    }
    answer_(client);
  }
}

}  // namespace tonadex::test
