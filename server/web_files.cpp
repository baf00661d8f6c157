#include "server/web_files.h"

#include <algorithm>

#include "server/compression.h"
#include "server/embedded_file.h"
#include "server/etag.h"

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

std::optional<Reply> WebReply(const Request& request, std::string_view path) {
  const auto file = std::ranges::find(kFiles, path, &WebFile::path);
  if (file == std::end(kFiles)) {
    return std::nullopt;
  }
  const bool packed = AcceptsGzip(request.acceptEncoding);
  Reply reply = TextReply(200, EmbeddedFile(std::string(file->name) + (packed ? ".gz" : "")));
  reply.contentType = file->type;
  reply.maxAgeSeconds = kMaxAgeSeconds;
  reply.fields = kSecurityFields;
  reply.fields += kVaryField;
  reply = WithETag(std::move(reply), request.ifNoneMatch);
  reply.fields += packed && reply.status == 200 ? kGzipField : "";
  return reply;
}

std::string ContractText() {
  return std::string(EmbeddedFile("openapi.json"));
}

}  // namespace tonadex::server
