#include "fetch/module/platform_trust.hpp"

#include <CoreFoundation/CoreFoundation.h>
#include <Security/Security.h>

#include <type_traits>
#include <vector>

namespace {

template <typename Reference>
using owned = std::unique_ptr<std::remove_pointer_t<Reference>,
                              decltype([](Reference object) { CFRelease(object); })>;

} // namespace

platform_certificate create_platform_certificate(std::span<unsigned char const> der)
{
  // Borrows the caller's bytes, only to make the certificate.
  owned<CFDataRef> const data{CFDataCreateWithBytesNoCopy(
      nullptr, der.data(), static_cast<CFIndex>(der.size()), kCFAllocatorNull)};
  return {data ? SecCertificateCreateWithData(nullptr, data.get()) : nullptr,
          [](void* certificate) { CFRelease(certificate); }};
}

bool is_trusted_server(std::span<platform_certificate const> chain)
{
  std::vector<void const*> certificates;
  for (auto const& certificate : chain)
    certificates.push_back(certificate.get());
  owned<CFArrayRef> const array{CFArrayCreate(nullptr, certificates.data(),
                                              static_cast<CFIndex>(certificates.size()), nullptr)};
  if (!array)
    return false;
  owned<SecPolicyRef> const policy{SecPolicyCreateSSL(true, nullptr)};
  if (!policy)
    return false;
  SecTrustRef created = nullptr;
  auto const status = SecTrustCreateWithCertificates(array.get(), policy.get(), &created);
  owned<SecTrustRef> const trust{created};
  return status == errSecSuccess && SecTrustEvaluateWithError(trust.get(), nullptr);
}
