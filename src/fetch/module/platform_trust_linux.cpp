#include "fetch/module/platform_trust.hpp"

#include <openssl/err.h>
#include <openssl/x509.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>

#include <unistd.h>

#include <array>

namespace {

// The distributions' own CA bundles; the first that exists is the platform's.
constexpr std::array bundles{
    "/etc/ssl/certs/ca-certificates.crt",                // Debian, Ubuntu, Arch, Alpine, Gentoo
    "/etc/pki/ca-trust/extracted/pem/tls-ca-bundle.pem", // Fedora, RHEL
    "/etc/ssl/ca-bundle.pem",                            // openSUSE
    "/etc/pki/tls/certs/ca-bundle.crt",
    "/etc/pki/tls/cacert.pem",
    "/etc/ssl/cert.pem",
};
// Searched where no bundle exists: one certificate a file, named by the hash of its subject.
constexpr char const* hashed_directory = "/etc/ssl/certs";

// Keys and signatures of at least 112 bits of security, OpenSSL's own level on Debian, see
// SSL_CTX_set_security_level(3). A new X509_STORE_CTX asks for none.
constexpr int authentication_level = 2;

using trust_anchors =
    std::unique_ptr<X509_STORE, decltype([](X509_STORE* store) { X509_STORE_free(store); })>;
using verification =
    std::unique_ptr<X509_STORE_CTX, decltype([](X509_STORE_CTX* c) { X509_STORE_CTX_free(c); })>;
using certificate_list = // of certificates that the chain still owns
    std::unique_ptr<STACK_OF(X509), decltype([](STACK_OF(X509) * list) { sk_X509_free(list); })>;

bool load_platform_anchors(X509_STORE* anchors)
{
  for (char const* const bundle : bundles)
    if (access(bundle, F_OK) == 0)
      return X509_STORE_load_file(anchors, bundle) == 1;
  return X509_STORE_load_path(anchors, hashed_directory) == 1;
}

certificate_list issuers(std::span<platform_certificate const> chain)
{
  certificate_list list{sk_X509_new_null()};
  for (auto const& certificate : chain.subspan(1))
    if (!list || !sk_X509_push(list.get(), static_cast<X509*>(certificate.get())))
      return nullptr;
  return list;
}

bool evaluate(std::span<platform_certificate const> chain)
{
  certificate_list const untrusted = issuers(chain);
  trust_anchors const anchors{X509_STORE_new()};
  verification const context{X509_STORE_CTX_new()};
  if (!untrusted || !anchors || !context || !load_platform_anchors(anchors.get()))
    return false;
  auto* const server = static_cast<X509*>(chain.front().get());
  if (!X509_STORE_CTX_init(context.get(), anchors.get(), server, untrusted.get())
      || !X509_STORE_CTX_set_purpose(context.get(), X509_PURPOSE_SSL_SERVER))
    return false;
  X509_VERIFY_PARAM_set_auth_level(X509_STORE_CTX_get0_param(context.get()), authentication_level);
  // Any trust anchor may end the chain, not only a self-signed root.
  X509_STORE_CTX_set_flags(context.get(), X509_V_FLAG_PARTIAL_CHAIN);
  return X509_verify_cert(context.get()) == 1;
}

} // namespace

// Both functions are called inside a handshake of OpenSSL, which would take errors left in its
// queue for its own, so they drop what they have queued.

platform_certificate create_platform_certificate(std::span<unsigned char const> der)
{
  ERR_set_mark();
  unsigned char const* in = der.data();
  X509* const certificate = d2i_X509(nullptr, &in, static_cast<long>(der.size()));
  ERR_pop_to_mark();
  return {certificate, [](void* object) { X509_free(static_cast<X509*>(object)); }};
}

bool is_trusted_server(std::span<platform_certificate const> chain)
{
  ERR_set_mark();
  bool const trusted = evaluate(chain);
  ERR_pop_to_mark();
  return trusted;
}
