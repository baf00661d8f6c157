// The module that encrypts with OpenSSL. Only the first request to an https address loads it,
// because loading the library takes longer than most commands of the terminal program.
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <array>

#include "net/http.h"
#include "platform/http/tls.h"

namespace tonadex::platform {
namespace {

const char* CertificateWords(long fault) {
  switch (fault) {
    case X509_V_ERR_CERT_HAS_EXPIRED:
      return kCertificateExpired;
    case X509_V_ERR_CERT_NOT_YET_VALID:
      return kCertificateTooNew;
    case X509_V_ERR_HOSTNAME_MISMATCH:
    case X509_V_ERR_IP_ADDRESS_MISMATCH:
      return kCertificateOfAnother;
    default:
      return kCertificateUntrusted;
  }
}

struct Delete {
  void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
  void operator()(SSL* connection) const { SSL_free(connection); }
};

void Require(bool done) {
  if (!done) {
    throw net::TransferError(kTlsFailure);
  }
}

class OpenSslSession : public TlsSession {
 public:
  explicit OpenSslSession(const char* host)
      : context_(SSL_CTX_new(TLS_client_method())),
        ssl_(context_ ? SSL_new(context_.get()) : nullptr) {
    Require(ssl_ && SSL_CTX_set_default_verify_paths(context_.get()) == 1 &&
            SSL_set_min_proto_version(ssl_.get(), TLS1_2_VERSION) == 1);
    SSL_set_verify(ssl_.get(), SSL_VERIFY_PEER, nullptr);
    SSL_set_hostflags(ssl_.get(),
                      X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS | X509_CHECK_FLAG_NEVER_CHECK_SUBJECT);
    const bool isAddress = X509_VERIFY_PARAM_set1_ip_asc(SSL_get0_param(ssl_.get()), host) == 1;
    Require(isAddress || (SSL_set1_host(ssl_.get(), host) == 1 &&
                          SSL_ctrl(ssl_.get(), SSL_CTRL_SET_TLSEXT_HOSTNAME,
                                   TLSEXT_NAMETYPE_host_name, const_cast<char*>(host)) == 1));
    in_ = BIO_new(BIO_s_mem());
    out_ = BIO_new(BIO_s_mem());
    Require(in_ != nullptr && out_ != nullptr);
    SSL_set_bio(ssl_.get(), in_, out_);
    SSL_set_connect_state(ssl_.get());
  }

  void Receive(std::string_view bytes, std::string& answer, std::string& plain) override {
    Require(bytes.empty() || BIO_write(in_, bytes.data(), static_cast<int>(bytes.size())) ==
                                 static_cast<int>(bytes.size()));
    ERR_clear_error();
    int result = SSL_do_handshake(ssl_.get());
    std::array<char, 16384> piece;
    while (result > 0 && (result = SSL_read(ssl_.get(), piece.data(), piece.size())) > 0) {
      plain.append(piece.data(), static_cast<std::size_t>(result));
    }
    CheckFault(SSL_get_error(ssl_.get(), result));
    answer += Waiting();
  }

  std::string Encrypted(std::string_view plain) override {
    ERR_clear_error();
    std::size_t written = 0;  // all of it: the bytes go to memory
    Require(SSL_write_ex(ssl_.get(), plain.data(), plain.size(), &written) == 1);
    return Waiting();
  }

  bool Connected() const override { return SSL_is_init_finished(ssl_.get()) == 1; }
  bool Ended() const override { return ended_; }

 private:
  void CheckFault(int fault) {
    ended_ = fault == SSL_ERROR_ZERO_RETURN;
    if (ended_ || fault == SSL_ERROR_WANT_READ) {
      return;
    }
    if (const long certificate = SSL_get_verify_result(ssl_.get()); certificate != X509_V_OK) {
      throw net::TransferError(CertificateWords(certificate));
    }
    const bool otherProtocol = ERR_GET_REASON(ERR_peek_error()) == SSL_R_WRONG_VERSION_NUMBER;
    throw net::TransferError(otherProtocol ? kNoTls : kTlsFailure);
  }

  std::string Waiting() {
    std::string bytes(BIO_ctrl_pending(out_), '\0');
    const int read = BIO_read(out_, bytes.data(), static_cast<int>(bytes.size()));
    bytes.resize(read > 0 ? static_cast<std::size_t>(read) : 0);
    return bytes;
  }

  std::unique_ptr<SSL_CTX, Delete> context_;
  std::unique_ptr<SSL, Delete> ssl_;
  BIO* in_ = nullptr;  // both belong to ssl_
  BIO* out_ = nullptr;
  bool ended_ = false;
};

}  // namespace
}  // namespace tonadex::platform

extern "C" tonadex::platform::TlsSession* TonadexTlsSession(const char* host) {
  return new tonadex::platform::OpenSslSession(host);
}
