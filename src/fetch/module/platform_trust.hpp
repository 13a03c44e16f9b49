#pragma once

#include <memory>
#include <span>

// What a platform must offer for a second opinion on a server's certificates, asked when OpenSSL's
// own trust locations lack the issuer. Both functions add no error to OpenSSL's queue.

// One certificate as the platform holds it; the deleter releases it, and empty means none.
using platform_certificate = std::unique_ptr<void, void (*)(void*)>;

// Makes a certificate from its DER encoding (RFC 5280); empty when the platform cannot parse the
// bytes. The bytes are not kept.
platform_certificate create_platform_certificate(std::span<unsigned char const> der);

// Whether the platform's trust store accepts the chain for a TLS server at this moment: one or more
// certificates, none of them empty, the server's own first, its possible issuers after it. No host
// name is compared. All that the evaluation creates is released before it returns.
bool is_trusted_server(std::span<platform_certificate const> chain);
