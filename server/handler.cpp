#include "server/handler.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "core/text.h"
#include "core/windows1252.h"
#include "net/addresses.h"
#include "server/api/api.h"
#include "server/api/problem.h"
#include "server/melody_name.h"
#include "server/metrics.h"
#include "server/pages.h"
#include "server/web_files.h"

namespace tonadex::server {
namespace {

using namespace core::literals;

constexpr int kMelodyMaxAgeSeconds = 24 * 60 * 60;  // a melody never changes
constexpr int kPageMaxAgeSeconds = 60;

struct Target {
  std::string_view path, query;
};

// Proxies may send the absolute form ("http://host/path").
std::string_view WithoutHost(std::string_view target) {
  const std::size_t scheme = target.find("://");
  if (target.starts_with('/') || scheme == target.npos) {
    return target;
  }
  const std::size_t path = target.find('/', scheme + 3);
  return path == target.npos ? "/" : target.substr(path);
}

Target SplitTarget(std::string_view target) {
  target = WithoutHost(target);
  const std::size_t mark = target.find('?');
  return {target.substr(0, mark), mark == target.npos ? "" : target.substr(mark + 1)};
}

// The value of `key` up to the end of the query: values are sent as typed, "&" included.
std::string_view RestAfter(std::string_view query, std::string_view key) {
  for (std::size_t at = 0; at < query.size();) {
    const std::string_view rest = query.substr(at);
    if (rest.starts_with(key) && rest.substr(key.size()).starts_with('=')) {
      return rest.substr(key.size() + 1);
    }
    at = std::min(query.find('&', at), query.size() - 1) + 1;
  }
  return {};
}

std::string_view UpToAmpersand(std::string_view value) {
  return value.substr(0, value.find('&'));
}

// Clients send names and words as typed, including "%", and escape only blanks and control
// characters; browsers escape everything. A request is decoded in these ways, the likeliest first,
// and the first valid result is used.
enum class Escapes { kOfLines, kNone, kAll };
constexpr Escapes kReadings[] = {Escapes::kOfLines, Escapes::kNone, Escapes::kAll};

// The characters that clients and the socket loop escape: blanks and control characters.
bool EndsLine(unsigned code) {
  return code <= ' ' || code == 0x7F;
}

std::string Undo(std::string_view text, Escapes escapes) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char* const digits = text.data() + i + 1;
    unsigned code = 0;
    const bool escape = text[i] == '%' && i + 2 < text.size() &&
                        std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2;
    if (escape && (escapes == Escapes::kAll || (escapes == Escapes::kOfLines && EndsLine(code)))) {
      plain += static_cast<char>(code);
      i += 2;
    } else {
      plain += text[i];
    }
  }
  return plain;
}

Reply OwnedReply(std::string body, int maxAgeSeconds = 0) {
  return {.body = {std::make_shared<const std::string>(std::move(body))},
          .maxAgeSeconds = maxAgeSeconds};
}

Reply PageReply(std::string utf8) {
  Reply reply = OwnedReply(std::move(utf8), kPageMaxAgeSeconds);
  reply.contentType = kHtmlType;
  return reply;
}

Reply AnswerSearch(const Request& request, std::string_view query, Store& store) {
  const std::string_view words = RestAfter(query, net::kSearchKey);
  const std::string typed = Undo(words, Escapes::kOfLines);
  const std::string plain = UndoEscapes(words);
  std::string listing = store.Search(typed, request.abandoned);
  if (listing.empty() && plain != typed) {
    listing = store.Search(plain, request.abandoned);
  }
  return request.abandoned && request.abandoned()
             ? TextReply(503, u8"La búsqueda se ha interrumpido."_w)
             : OwnedReply(std::move(listing));
}

struct UploadReply {
  UploadResult result;
  StatusWords reply;
};

constexpr UploadReply kUploadReplies[] = {
    {UploadResult::kStored, {200, u8"La melodía está en el servidor. ¡Gracias!"_w}},
    {UploadResult::kExists, {409, u8"La melodía ya estaba en el servidor."_w}},
    {UploadResult::kTooMany, {429, u8"Demasiadas melodías en poco tiempo. Espera un minuto."_w}},
    {UploadResult::kReadOnly, {403, u8"Este servidor solo deja leer."_w}},
    {UploadResult::kDiskFailure, {500, u8"No se ha podido guardar la melodía."_w}},
};

Reply AnswerUpload(const Request& request, std::string_view query, Store& store) {
  std::string name, contents;
  for (const Escapes escapes : kReadings) {
    name = Undo(UpToAmpersand(RestAfter(query, net::kUploadNameKey)), escapes);
    contents = Undo(UpToAmpersand(RestAfter(query, net::kUploadContentsKey)), escapes);
    if (UploadFault(name, contents).empty()) {
      break;
    }
  }
  const auto [status, words] =
      UploadWords(store.Upload(name, contents, request.client, request.now));
  return TextReply(status, words);
}

// For monitoring and load balancers.
Reply AnswerHealth(const Request&, std::string_view, Store& store) {
  const bool well = store.Reachable();
  Reply reply = TextReply(well ? 200 : 503,
                          well ? R"({"estado":"bien"})" : R"({"estado":"sin almac\u00e9n"})");
  reply.contentType = "application/json";
  return reply;
}

struct Endpoint {
  std::string_view path;
  Reply (*answer)(const Request& request, std::string_view query, Store& store);
};

constexpr Endpoint kEndpoints[] = {
    {"/salud", AnswerHealth},
    {net::kSearchPath, AnswerSearch},
    {net::kUploadPath, AnswerUpload},
    {net::kRandomPath, [](const Request& request, std::string_view,
                          Store& store) { return OwnedReply(store.Random(request.random)); }},
    {net::kFullListingPath, [](const Request&, std::string_view,
                               Store& store) { return Reply{.body = store.FullListing()}; }},
    {net::kBannerPath,
     [](const Request&, std::string_view, Store& store) { return PageReply(BannerPage(store)); }},
    {net::kInternetPagePath,
     [](const Request&, std::string_view, Store& store) { return PageReply(InternetPage(store)); }},
    {net::kStartPagePath,
     [](const Request&, std::string_view query, Store& store) {
       return PageReply(StartPage(store, UndoEscapes(RestAfter(query, net::kVersionKey))));
     }},
};

Reply AnswerMelody(std::string_view escapedName, const Store& store) {
  for (const Escapes escapes : kReadings) {
    if (auto melody = store.Melody(Undo(escapedName, escapes))) {
      return OwnedReply(*std::move(melody), kMelodyMaxAgeSeconds);
    }
  }
  return TextReply(404, u8"No hay ninguna melodía con ese nombre."_w);
}

Reply Answer(const Request& request, const Target& target, Store& store) {
  for (const Endpoint& endpoint : kEndpoints) {
    if (target.path == endpoint.path) {
      return endpoint.answer(request, target.query, store);
    }
  }
  if (target.path.starts_with(net::kMelodyFolderPath)) {
    return AnswerMelody(target.path.substr(net::kMelodyFolderPath.size()), store);
  }
  return WebReply(request, target.path).value_or(TextReply(404, u8"Aquí no hay nada."_w));
}

}  // namespace

const std::string_view kStoreAwayWords =
    u8"No se puede llegar al almacén de melodías. Prueba dentro de un momento."_w;

std::string RouteOf(std::string_view requested) {
  const std::string_view path = SplitTarget(requested).path;
  if (path.starts_with(kApiPath)) {
    return std::string(kApiPath).append(ApiRoute(path.substr(kApiPath.size())));
  }
  const auto endpoint = std::ranges::find(kEndpoints, path, &Endpoint::path);
  return std::string(endpoint != std::end(kEndpoints)           ? endpoint->path
                     : path.starts_with(net::kMelodyFolderPath) ? net::kMelodyFolderPath
                     : path == "/" || path == kMetricsPath      ? path
                                                                : "otras");
}

std::string UndoEscapes(std::string_view text) {
  return Undo(text, Escapes::kAll);
}

void AppendEscaped(std::string& text, char byte) {
  constexpr std::string_view kHex = "0123456789ABCDEF";
  text.append({'%', kHex[core::Code(byte) / 16u], kHex[core::Code(byte) % 16u]});
}

std::string PercentEncoded(std::string_view bytes) {
  std::string encoded;
  for (const char c : bytes) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    if (letter || core::IsDigit(c) || std::string_view("-._~").find(c) != std::string_view::npos) {
      encoded += c;
    } else {
      AppendEscaped(encoded, c);
    }
  }
  return encoded;
}

StatusWords UploadWords(const UploadAnswer& answer) {
  const auto found = std::ranges::find(kUploadReplies, answer.result, &UploadReply::result);
  return found == std::end(kUploadReplies) ? StatusWords{400, answer.fault} : found->reply;
}

Reply TextReply(int status, std::string_view text) {
  Reply reply = OwnedReply(std::string(text));
  reply.status = status;
  return reply;
}

Reply Handle(const Request& request, Store& store, RateLimit* conversions) {
  const Target target = SplitTarget(request.target);
  if (target.path.starts_with(kApiPath)) {
    return AnswerApi(request, target.path.substr(kApiPath.size()), target.query, store,
                     conversions);
  }
  if (request.post) {
    return RefusalReply(405, target.path);
  }
  try {
    return Answer(request, target, store);
  } catch (const StoreAway&) {
    return TextReply(503, kStoreAwayWords);
  }
}

}  // namespace tonadex::server
