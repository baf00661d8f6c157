#pragma once

#include <memory>
#include <string>
#include <string_view>

// The client side of TLS (1.2; with OpenSSL also 1.3), without a socket: it converts received bytes
// to plain text and plain text to bytes to send.
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

  // Processes bytes received from the server; the first call, with none, starts the handshake.
  // Appends the bytes to send to `answer` and the decrypted ones to `plain`. Throws
  // net::TransferError, also for a certificate that is not valid for the host.
  virtual void Receive(std::string_view bytes, std::string& answer, std::string& plain) = 0;
  // Encrypts `plain`; returns the bytes to send. Call only if Connected().
  virtual std::string Encrypted(std::string_view plain) = 0;
  virtual bool Connected() const = 0;  // the handshake is complete and the certificate valid
  virtual bool Ended() const = 0;      // the server has announced the end of its data
};

// `host`: a name or an IP address without brackets. Throws net::TransferError.
std::unique_ptr<TlsSession> MakeTlsSession(const std::string& host);

}  // namespace tonadex::platform
