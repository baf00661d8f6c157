#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/melody_file.h"
#include "core/text.h"
#include "fuzz/require.h"
#include "net/file_name.h"
#include "server/handler.h"
#include "server/http_server.h"
#include "server/shelf.h"
#include "tests/http/raw_socket.h"
#include "tests/support/parsed_listing.h"
#include "tests/support/temp_folder.h"

// Sends any bytes to a server with a small shelf over a real connection.
namespace {

using namespace tonadex;

constexpr int kUploadsPerMinute = 1'000'000;
constexpr std::string_view kMelody = "Vals:d=4,o=5,b=100:c,8cjuh9hay6,p\r\n";

// Connects from a different loopback address each time: one address would run out of ports, because
// a closed connection occupies its port for a minute.
test::RawSocket Connect(std::uint16_t port) {
  static std::uint32_t host = 0;
  host = host % 0xFFFFF + 1;
  sockaddr_in from{};
  from.sin_family = AF_INET;
  from.sin_addr.s_addr = htonl(INADDR_LOOPBACK + host);
  sockaddr_in to = from;
  to.sin_port = htons(port);
  to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  test::RawSocket client(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  Require(::bind(client.handle(), reinterpret_cast<sockaddr*>(&from), sizeof from) == 0 &&
              ::connect(client.handle(), reinterpret_cast<sockaddr*>(&to), sizeof to) == 0,
          "a server that nobody can reach");
  return client;
}

// A server whose replies depend only on the request and the shelf.
class Conversation {
 public:
  Conversation() { Refill(); }

  // The server's replies to `bytes`, sent in two pieces split at `cut`.
  std::string Replies(std::string_view bytes, std::size_t cut) {
    const test::RawSocket client = Connect(server_.Port());
    client.Send(bytes.substr(0, cut));
    client.Send(bytes.substr(cut));
    client.EndSending();
    std::string replies = client.ReadAll();
    // An interim reply, which depends on how much of the request has arrived.
    return core::ReplaceAll(replies, "HTTP/1.1 100 Continue\r\n\r\n", "");
  }
  // Returns the log so far and clears it.
  std::vector<std::string> TakeLog() {
    const std::lock_guard lock(mutex_);
    return std::exchange(log_, {});
  }
  server::Shelf& shelf() { return *shelf_; }
  const std::filesystem::path& path() const { return folder_->path(); }
  void Refill() {
    auto folder = std::make_unique<test::TempFolder>();
    folder->Write("vals.34", kMelody);
    folder->Write("a\u00f1o (2).5", "A\u00f1o:d=4,o=5,b=100:c");
    const std::lock_guard lock(mutex_);
    shelf_ = std::make_unique<server::Shelf>(folder->path(), server::ShelfAccess::kReadWrite,
                                             kUploadsPerMinute);
    folder_ = std::move(folder);
  }

 private:
  server::Reply Answer(server::Request request) {
    request.random = 0;
    request.client = "x";
    const std::lock_guard lock(mutex_);
    return server::Handle(request, *shelf_);
  }
  server::ServerOptions Options() {
    server::ServerOptions options;
    options.behindProxy = true;
    options.threads = 1;
    options.served = [this](const server::Exchange& exchange) {
      const std::lock_guard lock(mutex_);
      log_.push_back(server::LogLine(exchange));
    };
    return options;
  }

  std::mutex mutex_;
  std::unique_ptr<test::TempFolder> folder_;
  std::unique_ptr<server::Shelf> shelf_;
  std::vector<std::string> log_;
  server::HttpServer server_{Options(), [this](const auto& request) { return Answer(request); }};
};

// time address method path status bytes milliseconds
std::vector<std::string_view> Fields(std::string_view line) {
  std::vector<std::string_view> fields;
  for (std::size_t at = 0; at < line.size();) {
    const std::size_t end = std::min(line.find(' ', at), line.size());
    fields.push_back(line.substr(at, end - at));
    at = end + 1;
  }
  return fields;
}

// Each line of the log belongs to one reply, and the replies are complete.
void CheckReplies(std::string_view replies, const std::vector<std::string>& log) {
  for (const std::string& line : log) {
    Require(std::ranges::all_of(line, [](char c) { return c >= ' ' && c < '\x7f'; }),
            "a log line that is no plain text");
    const auto fields = Fields(line);
    Require(fields.size() == 7, "a log line with other fields");
    const std::string start = "HTTP/1.1 " + std::string(fields[4]) + " ";
    Require(replies.starts_with(start), "another status than the log's");
    Require(fields[4] != "500" && fields[4] != "503", "an input that is too much for the server");
    const std::size_t body = replies.find("\r\n\r\n");
    Require(body != replies.npos, "a reply without end");
    const std::string length = "\r\nContent-Length: " + std::string(fields[5]) + "\r\n";
    const std::size_t size = std::stoul(std::string(fields[5]));
    Require(fields[2] != "HEAD" || size == 0, "bytes for a reply without a body");
    // A refused request is logged without its method; the reply to a HEAD has no body even then.
    const bool refusedHead = fields[2] == "-" && size == 0;
    Require(fields[4] == "304" || fields[2] == "HEAD" || refusedHead ||
                replies.substr(0, body).find(length) != replies.npos,
            "another length than the log's");
    Require(replies.size() >= body + 4 + size, "a reply that is cut");
    replies.remove_prefix(body + 4 + size);
  }
  Require(replies.empty(), "a reply that is not in the log");
}

// Every uploaded melody can be found, fetched and stored by any client, and nothing else was
// written.
void CheckShelf(Conversation& conversation) {
  const server::Shelf& shelf = conversation.shelf();
  std::string records;
  for (const server::SharedText& text : shelf.FullListing()) {
    records += *text;
  }
  const net::Listing listing = net::ParseListing(records, true);
  Require(listing.rest.empty() && listing.rows.size() == shelf.size(), "a listing out of step");
  for (const net::ListingRow& row : listing.rows) {
    const std::string name = core::MelodyFileName(row.text, row.number);
    Require(net::IsSafeFileName(name), "a file name that no client stores");
    Require(shelf.Melody(name).has_value(), "a melody that its listing does not lead to");
  }
  const std::filesystem::directory_iterator files(conversation.path());
  const auto melodies = std::count_if(begin(files), end(files), [](const auto& entry) {
    return entry.path().filename() != ".indice";
  });
  Require(static_cast<std::size_t>(melodies) == shelf.size(), "other files than melodies");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Conversation conversation;
  if (size == 0) {
    return 0;
  }
  const std::string bytes(data + 1, data + size);
  const std::size_t before = conversation.shelf().size();
  std::string first;
  for (const std::size_t cut : {bytes.size(), std::min<std::size_t>(data[0], bytes.size())}) {
    const std::string replies = conversation.Replies(bytes, cut);
    CheckReplies(replies, conversation.TakeLog());
    Require(first.empty() || replies == first, "the pieces of a request make a difference");
    first = replies;
    if (conversation.shelf().size() != before) {
      CheckShelf(conversation);
      conversation.Refill();
    }
  }
  return 0;
}
