#pragma once

#include <openssl/types.h>

// OpenSSL's verify callback, see SSL_CTX_set_verify(3), called for each step of the verification.
// Accepts a step that OpenSSL accepted. A step that OpenSSL rejected because the issuer is not
// trusted is accepted, and its error cleared, when the platform trusts the chain; every other
// rejection stands. Returns 1 to accept, 0 to reject; an exception inside ends the process.
extern "C" int verify_server_certificates(int preverified, X509_STORE_CTX* store_context) noexcept;

// Whether the platform's trust store accepts the chain that OpenSSL has built so far, the server's
// own certificate first. False, too, for an empty chain or one with an unusable certificate.
bool verify_certificate_chain(X509_STORE_CTX* store_context);
