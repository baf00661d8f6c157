#include "server/web_files.h"

#include <algorithm>
#include <array>

#include "server/delivery.h"
#include "server/embedded_file.h"

namespace tonadex::server {
namespace {

constexpr int kMaxAgeSeconds = 60;

struct WebFile {
  std::string_view path, name, type;
};
constexpr WebFile kFiles[] = {
    {"/", "pagina.html", kHtmlType},
    {"/web/pagina.css", "pagina.css", "text/css; charset=utf-8"},
    {"/web/pagina.js", "pagina.js", "text/javascript; charset=utf-8"},
    {"/web/tonadex.svg", "tonadex.svg", "image/svg+xml"},
};

// Forbids external resources, scripts within the page, and embedding in frames.
constexpr std::string_view kSecurityFields =
    "Content-Security-Policy: default-src 'none'; script-src 'self'; style-src 'self'; "
    "img-src 'self'; connect-src 'self'; base-uri 'none'; form-action 'self'; "
    "frame-ancestors 'none'\r\n"
    "Referrer-Policy: no-referrer\r\n";

}  // namespace

FixedBody EmbeddedBody(std::string_view name) {
  return MakeFixedBody(std::string(EmbeddedFile(name)),
                       std::string(EmbeddedFile(std::string(name) + ".gz")));
}

std::optional<Reply> WebReply(const Request& request, std::string_view path) {
  static const auto bodies = [] {
    std::array<FixedBody, std::size(kFiles)> made;
    std::ranges::transform(kFiles, made.begin(), EmbeddedBody, &WebFile::name);
    return made;
  }();
  const auto file = std::ranges::find(kFiles, path, &WebFile::path);
  if (file == std::end(kFiles)) {
    return std::nullopt;
  }
  Reply reply = FixedReply(bodies[static_cast<std::size_t>(file - kFiles)], file->type);
  reply.maxAgeSeconds = kMaxAgeSeconds;
  reply.fields = kSecurityFields;
  return Delivered(std::move(reply), request);
}

}  // namespace tonadex::server
