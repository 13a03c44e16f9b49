#pragma once

// Stands in for two frameworks of macOS, so that platform_trust_macos.cpp runs on Linux and trusts
// what Linux trusts, if asked for servers of any name. Objects lie on the heap, where the
// sanitizers see a release too many, too few or too early.
#include "fetch/module/platform_trust.hpp"

#include <vector>

platform_certificate create_linux_certificate(std::span<unsigned char const> der);
bool is_trusted_on_linux(std::span<platform_certificate const> chain);

// clang-format off
struct object { std::vector<unsigned char> der = {}; std::vector<void const*> chain = {}; };
typedef object *CFDataRef, *CFArrayRef, *SecCertificateRef, *SecPolicyRef, *SecTrustRef;
using CFIndex = long;
inline object no_allocator;
inline void* const kCFAllocatorNull = &no_allocator;
constexpr int errSecSuccess = 0;

inline void CFRelease(void const* released) { delete static_cast<object const*>(released); }

inline CFDataRef CFDataCreateWithBytesNoCopy(void*, unsigned char const* der, CFIndex size, void* a)
{ return a == kCFAllocatorNull ? new object{.der = {der, der + size}} : nullptr; }

// Takes a certificate only, with no byte behind it: its length stands in the third and fourth byte.
inline SecCertificateRef SecCertificateCreateWithData(void*, CFDataRef data)
{ return data->der.size() == 4u + data->der[2] * 256u + data->der[3] ? new object{*data} : nullptr; }

inline CFArrayRef CFArrayCreate(void*, void const** values, CFIndex count, void*)
{ return new object{.chain = std::vector(values, values + count)}; }

inline SecPolicyRef SecPolicyCreateSSL(bool server, void* host_name)
{ return server && !host_name ? new object{} : nullptr; }

inline int SecTrustCreateWithCertificates(CFArrayRef array, SecPolicyRef policy, SecTrustRef* trust)
{ *trust = new object{.chain = array->chain}; return policy ? errSecSuccess : 1; }

inline bool SecTrustEvaluateWithError(SecTrustRef trust, void*)
{
  std::vector<platform_certificate> chain;
  for (void const* const certificate : trust->chain)
    chain.push_back(create_linux_certificate(static_cast<object const*>(certificate)->der));
  return is_trusted_on_linux(chain);
}
