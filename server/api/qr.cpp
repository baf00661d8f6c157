#include "core/windows1252.h"
#include "server/api/call.h"
#ifdef TONADEX_QR
#include <qrencode.h>

#include <memory>
#endif

namespace tonadex::server {

using namespace core::literals;

#ifdef TONADEX_QR
namespace {

constexpr int kQuietZone = 4;  // light modules on each side, which readers need

// A path of one square for each dark module.
std::string Svg(const QRcode& code) {
  const std::string size = std::to_string(code.width + 2 * kQuietZone);
  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + size + " " + size +
                    "\" shape-rendering=\"crispEdges\"><path fill=\"#fff\" d=\"M0 0h" + size + "v" +
                    size + "H0z\"/><path d=\"";
  for (int i = 0; i < code.width * code.width; ++i) {
    if ((code.data[i] & 1) != 0) {
      svg += "M" + std::to_string(i % code.width + kQuietZone) + " " +
             std::to_string(i / code.width + kQuietZone) + "h1v1h-1z";
    }
  }
  return svg + "\"/></svg>";
}

}  // namespace

Reply QrCode(const Call& call) {
  const std::string text = core::ToUtf8(call.parameters["texto"]);
  const std::unique_ptr<QRcode, decltype(&QRcode_free)> code(
      QRcode_encodeData(static_cast<int>(text.size()),
                        reinterpret_cast<const unsigned char*>(text.data()), 0, QR_ECLEVEL_L),
      &QRcode_free);
  if (!code) {
    throw ApiProblem{400, std::string(u8"En un código QR caben de 1 a 2953 caracteres."_w)};
  }
  Reply reply = TextReply(200, Svg(*code));
  reply.contentType = "image/svg+xml";
  return reply;
}
#else
Reply QrCode(const Call&) {
  throw ApiProblem{404, std::string(u8"Este servidor no hace códigos QR: copia la dirección."_w)};
}
#endif

}  // namespace tonadex::server
