#include "fetch/module/certificate_verification.hpp"

#include "fetch/module/platform_trust.hpp"

#include <openssl/x509.h>
#include <openssl/x509_vfy.h>

#include <cstddef>
#include <vector>

namespace {

bool is_untrusted_issuer(int error)
{
  return error == X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT
         || error == X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN
         || error == X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY;
}

// Encodes into der, resized to the encoding's exact length. False when that fails.
bool encode_der(X509* certificate, std::vector<unsigned char>& der)
{
  int const length = i2d_X509(certificate, nullptr);
  if (length < 1)
    return false;
  der.resize(static_cast<std::size_t>(length));
  unsigned char* out = der.data();
  return i2d_X509(certificate, &out) == length;
}

} // namespace

int verify_server_certificates(int preverified, X509_STORE_CTX* store_context) noexcept
{
  if (preverified == 1)
    return 1;
  if (!is_untrusted_issuer(X509_STORE_CTX_get_error(store_context))
      || !verify_certificate_chain(store_context))
    return 0;
  X509_STORE_CTX_set_error(store_context, X509_V_OK);
  return 1;
}

bool verify_certificate_chain(X509_STORE_CTX* store_context)
{
  STACK_OF(X509)* const chain = X509_STORE_CTX_get0_chain(store_context);
  int const count = sk_X509_num(chain);
  if (count < 1)
    return false;
  std::vector<platform_certificate> certificates;
  std::vector<unsigned char> der;
  for (int i = 0; i < count; ++i) {
    if (!encode_der(sk_X509_value(chain, i), der))
      return false;
    certificates.push_back(create_platform_certificate(der));
    if (!certificates.back())
      return false;
  }
  return is_trusted_server(certificates);
}
