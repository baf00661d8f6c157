#pragma once

#include <memory>
#include <string>
#include <string_view>

// The client's end of an encrypted connection (TLS 1.2 or later) without its socket: bytes that the
// server sent go in, bytes to send and what the server said come out.
namespace tonadex::platform {

// Why an encrypted connection fails, UTF-8.
inline constexpr const char* kCertificateExpired = "El certificado del servidor ha caducado";
inline constexpr const char* kCertificateTooNew =
    "El certificado del servidor aún no vale: mira si la hora de este equipo es la buena";
inline constexpr const char* kCertificateOfAnother =
    "El certificado del servidor es de otro nombre";
inline constexpr const char* kCertificateUntrusted =
    "El certificado del servidor no es de confianza en este equipo";
inline constexpr const char* kNoTls = "En esa dirección no hay https: prueba con http://";
inline constexpr const char* kTlsFailure =
    "No se puede acordar una conexión cifrada con el servidor";

class TlsSession {
 public:
  virtual ~TlsSession() = default;

  // Takes bytes that the server sent; the first call, without any, begins the handshake. Appends to
  // `answer` what must be sent to the server, to `plain` what it said. Throws net::TransferError,
  // also for a certificate that is not valid for the host.
  virtual void Receive(std::string_view bytes, std::string& answer, std::string& plain) = 0;
  // `plain` as the bytes to send. Only when Connected.
  virtual std::string Encrypted(std::string_view plain) = 0;
  virtual bool Connected() const = 0;  // the handshake is over and the certificate valid
  virtual bool Ended() const = 0;      // the server has said that nothing follows
};

// `host`: a name or an IP address without brackets. Throws net::TransferError.
std::unique_ptr<TlsSession> MakeTlsSession(const std::string& host);

}  // namespace tonadex::platform
