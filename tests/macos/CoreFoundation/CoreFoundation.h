#pragma once

// Stands in for two frameworks of macOS, so that platform_trust_macos.cpp runs on Linux and trusts
// what Linux trusts. Objects lie on the heap, where the sanitizers see a release too many, too few
// or too early. A step fails while an environment variable has the name of what it makes.
#include "fetch/module/platform_trust.hpp"

#include <cstdlib>
#include <vector>

platform_certificate create_linux_certificate(std::span<unsigned char const> der);
bool is_trusted_on_linux(std::span<platform_certificate const> chain);

struct object {
  std::span<unsigned char const> data = {};
  platform_certificate certificate{nullptr, nullptr};
  std::vector<void const*> chain = {};
};
typedef object *CFDataRef, *CFArrayRef, *SecCertificateRef, *SecPolicyRef, *SecTrustRef;
using CFIndex = long;
constexpr void* kCFAllocatorNull = nullptr;
constexpr int errSecSuccess = 0;

inline object* make(char const* kind, object content)
{
  return std::getenv(kind) ? nullptr : new object{std::move(content)};
}

inline void CFRelease(void const* released)
{
  delete static_cast<object const*>(released);
}

inline CFDataRef CFDataCreateWithBytesNoCopy(void*, unsigned char const* bytes, CFIndex size, void*)
{
  return make("data", {.data = {bytes, static_cast<std::size_t>(size)}});
}

inline SecCertificateRef SecCertificateCreateWithData(void*, CFDataRef data)
{
  return make("certificate", {.certificate = create_linux_certificate(data->data)});
}

inline CFArrayRef CFArrayCreate(void*, void const** values, CFIndex count, void*)
{
  return make("array", {.chain = std::vector(values, values + count)});
}

inline SecPolicyRef SecPolicyCreateSSL(bool, void*)
{
  return new object{};
}

inline int SecTrustCreateWithCertificates(CFArrayRef array, SecPolicyRef, SecTrustRef* trust)
{
  *trust = new object{.chain = array->chain};
  return std::getenv("trust") ? 1 : errSecSuccess;
}

inline bool SecTrustEvaluateWithError(SecTrustRef trust, void*)
{
  std::vector<platform_certificate> chain;
  for (void const* const certificate : trust->chain)
    chain.emplace_back(static_cast<object const*>(certificate)->certificate.get(), [](void*) {});
  return is_trusted_on_linux(chain);
}
