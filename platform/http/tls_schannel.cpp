#define SECURITY_WIN32
#include <windows.h>

// These need windows.h before them.
#include <schannel.h>
#include <security.h>
#include <wincrypt.h>

#include <algorithm>
#include <array>

#include "net/http.h"
#include "platform/http/tls.h"

namespace tonadex::platform {
namespace {

constexpr ULONG kWants = ISC_REQ_SEQUENCE_DETECT | ISC_REQ_REPLAY_DETECT | ISC_REQ_CONFIDENTIALITY |
                         ISC_REQ_STREAM | ISC_REQ_ALLOCATE_MEMORY | ISC_REQ_MANUAL_CRED_VALIDATION |
                         ISC_REQ_USE_SUPPLIED_CREDS;

void Require(bool done, const char* words = kTlsFailure) {
  if (!done) {
    throw net::TransferError(words);
  }
}

const char* CertificateWords(DWORD fault) {
  switch (fault) {
    case static_cast<DWORD>(CERT_E_EXPIRED):
      return kCertificateExpired;
    case static_cast<DWORD>(CERT_E_CN_NO_MATCH):
      return kCertificateOfAnother;
    default:
      return kCertificateUntrusted;
  }
}

struct Release {
  void operator()(const CERT_CONTEXT* certificate) const {
    ::CertFreeCertificateContext(certificate);
  }
  void operator()(const CERT_CHAIN_CONTEXT* chain) const { ::CertFreeCertificateChain(chain); }
};

// The system reports "not yet valid" and "expired" as the same error.
const char* TimeWords(const CERT_CONTEXT& certificate, const char* words) {
  return words == kCertificateExpired &&
                 ::CertVerifyTimeValidity(nullptr, certificate.pCertInfo) < 0
             ? kCertificateTooNew
             : words;
}

class SchannelSession : public TlsSession {
 public:
  explicit SchannelSession(const std::string& host) : host_(host.begin(), host.end()) {
    SCHANNEL_CRED wanted{};
    wanted.dwVersion = SCHANNEL_CRED_VERSION;
    wanted.grbitEnabledProtocols = SP_PROT_TLS1_2_CLIENT;
    wanted.dwFlags =
        SCH_CRED_MANUAL_CRED_VALIDATION | SCH_CRED_NO_DEFAULT_CREDS | SCH_USE_STRONG_CRYPTO;
    std::wstring package = UNISP_NAME_W;
    Require(::AcquireCredentialsHandleW(nullptr, package.data(), SECPKG_CRED_OUTBOUND, nullptr,
                                        &wanted, nullptr, nullptr, &credentials_,
                                        nullptr) == SEC_E_OK);
  }
  ~SchannelSession() override {
    if (begun_) {
      ::DeleteSecurityContext(&context_);
    }
    ::FreeCredentialsHandle(&credentials_);
  }
  SchannelSession(const SchannelSession&) = delete;
  SchannelSession& operator=(const SchannelSession&) = delete;

  void Receive(std::string_view bytes, std::string& answer, std::string& plain) override {
    sealed_ += bytes;
    if (!connected_) {
      Negotiate(answer);
    }
    while (connected_ && !ended_ && !sealed_.empty() && Decrypt(answer, plain)) {
    }
  }

  std::string Encrypted(std::string_view plain) override {
    std::string all;
    for (std::size_t at = 0; at < plain.size(); at += sizes_.cbMaximumMessage) {
      const std::string_view piece = plain.substr(at, sizes_.cbMaximumMessage);
      std::string message(sizes_.cbHeader, '\0');
      message += piece;
      message.append(sizes_.cbTrailer, '\0');
      std::array<SecBuffer, 4> parts = {
          SecBuffer{sizes_.cbHeader, SECBUFFER_STREAM_HEADER, message.data()},
          SecBuffer{static_cast<ULONG>(piece.size()), SECBUFFER_DATA,
                    message.data() + sizes_.cbHeader},
          SecBuffer{sizes_.cbTrailer, SECBUFFER_STREAM_TRAILER,
                    message.data() + sizes_.cbHeader + piece.size()},
          SecBuffer{0, SECBUFFER_EMPTY, nullptr}};
      SecBufferDesc list{SECBUFFER_VERSION, static_cast<ULONG>(parts.size()), parts.data()};
      Require(::EncryptMessage(&context_, 0, &list, 0) == SEC_E_OK);
      all.append(message, 0,
                 std::size_t{parts[0].cbBuffer} + parts[1].cbBuffer + parts[2].cbBuffer);
    }
    return all;
  }

  bool Connected() const override { return connected_; }
  bool Ended() const override { return ended_; }

 private:
  // Continues the handshake with the received bytes.
  void Negotiate(std::string& answer) {
    while (!begun_ || !sealed_.empty()) {
      std::array<SecBuffer, 2> in = {
          SecBuffer{static_cast<ULONG>(sealed_.size()), SECBUFFER_TOKEN, sealed_.data()},
          SecBuffer{0, SECBUFFER_EMPTY, nullptr}};
      SecBuffer token{0, SECBUFFER_TOKEN, nullptr};
      SecBufferDesc given{SECBUFFER_VERSION, static_cast<ULONG>(in.size()), in.data()};
      SecBufferDesc made{SECBUFFER_VERSION, 1, &token};
      ULONG attributes = 0;
      const SECURITY_STATUS status = ::InitializeSecurityContextW(
          &credentials_, begun_ ? &context_ : nullptr, host_.data(), kWants, 0, 0,
          begun_ ? &given : nullptr, 0, begun_ ? nullptr : &context_, &made, &attributes, nullptr);
      if (token.pvBuffer != nullptr) {
        answer.append(static_cast<const char*>(token.pvBuffer), token.cbBuffer);
        ::FreeContextBuffer(token.pvBuffer);
      }
      if (status == SEC_E_INCOMPLETE_MESSAGE) {
        return;
      }
      Require(
          status == SEC_E_OK || status == SEC_I_CONTINUE_NEEDED,
          status == SEC_E_INVALID_TOKEN || status == SEC_E_ILLEGAL_MESSAGE ? kNoTls : kTlsFailure);
      begun_ = true;
      KeepExtra(in);
      if (status == SEC_E_OK) {
        CheckCertificate();
        Require(::QueryContextAttributesW(&context_, SECPKG_ATTR_STREAM_SIZES, &sizes_) ==
                SEC_E_OK);
        connected_ = true;
        return;
      }
    }
  }

  // Decrypts one record. False if it is incomplete.
  bool Decrypt(std::string& answer, std::string& plain) {
    constexpr char kAlert = 21;  // record type; here the server's close_notify
    const bool alert = sealed_.front() == kAlert;
    std::array<SecBuffer, 4> parts{};
    parts[0] = {static_cast<ULONG>(sealed_.size()), SECBUFFER_DATA, sealed_.data()};
    SecBufferDesc list{SECBUFFER_VERSION, static_cast<ULONG>(parts.size()), parts.data()};
    const SECURITY_STATUS status = ::DecryptMessage(&context_, &list, 0, nullptr);
    if (status == SEC_E_INCOMPLETE_MESSAGE) {
      return false;
    }
    ended_ = status == SEC_I_CONTEXT_EXPIRED || (status == SEC_E_OK && alert);
    Require(status == SEC_E_OK || status == SEC_I_RENEGOTIATE || ended_);
    for (const SecBuffer& part : parts) {
      if (part.BufferType == SECBUFFER_DATA) {
        plain.append(static_cast<const char*>(part.pvBuffer), part.cbBuffer);
      }
    }
    KeepExtra(parts);
    if (status == SEC_I_RENEGOTIATE) {
      Negotiate(answer);
    }
    return true;
  }

  // Keeps only the received bytes that the call did not consume.
  template <std::size_t kCount>
  void KeepExtra(const std::array<SecBuffer, kCount>& parts) {
    const auto extra = std::ranges::find(parts, ULONG{SECBUFFER_EXTRA}, &SecBuffer::BufferType);
    sealed_.erase(0, sealed_.size() - (extra == parts.end() ? 0 : extra->cbBuffer));
  }

  void CheckCertificate() {
    const CERT_CONTEXT* sent = nullptr;
    Require(::QueryContextAttributesW(&context_, SECPKG_ATTR_REMOTE_CERT_CONTEXT, &sent) ==
            SEC_E_OK);
    const std::unique_ptr<const CERT_CONTEXT, Release> certificate(sent);
    CERT_CHAIN_PARA usage{};
    usage.cbSize = sizeof usage;
    const CERT_CHAIN_CONTEXT* found = nullptr;
    Require(::CertGetCertificateChain(nullptr, certificate.get(), nullptr, certificate->hCertStore,
                                      &usage, 0, nullptr, &found) != 0);
    const std::unique_ptr<const CERT_CHAIN_CONTEXT, Release> chain(found);
    HTTPSPolicyCallbackData server{};
    server.cbStruct = sizeof server;
    server.dwAuthType = AUTHTYPE_SERVER;
    server.pwszServerName = host_.data();
    CERT_CHAIN_POLICY_PARA policy{};
    policy.cbSize = sizeof policy;
    policy.pvExtraPolicyPara = &server;
    CERT_CHAIN_POLICY_STATUS result{};
    result.cbSize = sizeof result;
    Require(::CertVerifyCertificateChainPolicy(CERT_CHAIN_POLICY_SSL, chain.get(), &policy,
                                               &result) != 0);
    if (result.dwError != 0) {
      throw net::TransferError(TimeWords(*certificate, CertificateWords(result.dwError)));
    }
    // The chain policy of some systems accepts a partial chain without a trusted root.
    Require(chain->TrustStatus.dwErrorStatus == CERT_TRUST_NO_ERROR, kCertificateUntrusted);
  }

  std::wstring host_;
  CredHandle credentials_{};
  CtxtHandle context_{};
  SecPkgContext_StreamSizes sizes_{};
  std::string sealed_;  // received, not yet decrypted
  bool begun_ = false;
  bool connected_ = false;
  bool ended_ = false;
};

}  // namespace

std::unique_ptr<TlsSession> MakeTlsSession(const std::string& host) {
  return std::make_unique<SchannelSession>(host);
}

}  // namespace tonadex::platform
