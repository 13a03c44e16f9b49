#pragma once

// Stands in for two frameworks of macOS, so that platform_trust_macos.cpp runs on Linux and trusts
// what Linux trusts. Unexpected arguments and a wrong order of release end the process; what is not
// released, the sanitizers report. An object of the kind that REFUSED names cannot be made.
#include "fetch/module/platform_trust.hpp"

#undef NDEBUG
#include <cassert>
#include <cstdlib>
#include <string>
#include <vector>

platform_certificate create_linux_certificate(std::span<unsigned char const> der);
bool is_trusted_on_linux(std::span<platform_certificate const> chain);

// An object is released after those of the kinds that stand behind its own.
enum kind { certificate, array, policy, trust, data, kinds };
inline constexpr char const* names[]{"certificate", "array", "policy", "trust", "data"};
inline int living[kinds];

struct object {
  kind what;
  std::span<unsigned char const> bytes = {};
  platform_certificate on_linux = {nullptr, nullptr};
  std::vector<void const*> members = {};
};

using CFIndex = long;
using CFDataRef = object const*;
using CFArrayRef = object const*;
using SecPolicyRef = object*;
using SecTrustRef = object*;
inline void const* const kCFAllocatorNull = "no deallocator";
constexpr int errSecSuccess = 0;

inline object* make(object made)
{
  char const* const refused = std::getenv("REFUSED");
  if (refused && refused == std::string{names[made.what]})
    return nullptr;
  ++living[made.what];
  return new object{std::move(made)};
}

inline object* CFDataCreateWithBytesNoCopy(void* allocator, unsigned char const* bytes,
                                           CFIndex length, void const* deallocator)
{
  assert(!allocator && deallocator == kCFAllocatorNull);
  return make({.what = data, .bytes = {bytes, static_cast<std::size_t>(length)}});
}

inline object* SecCertificateCreateWithData(void* allocator, CFDataRef bytes)
{
  assert(!allocator && bytes->what == data);
  return make({.what = certificate, .on_linux = create_linux_certificate(bytes->bytes)});
}

inline object* CFArrayCreate(void* allocator, void const** values, CFIndex count, void* callbacks)
{
  assert(!allocator && !callbacks);
  return make({.what = array, .members = std::vector(values, values + count)});
}

inline object* SecPolicyCreateSSL(bool server, void* host_name)
{
  assert(server && !host_name);
  return make({.what = policy});
}

inline int SecTrustCreateWithCertificates(CFArrayRef chain, SecPolicyRef rule, SecTrustRef* made)
{
  assert(chain->what == array && rule->what == policy);
  *made = make({.what = trust, .members = chain->members});
  return *made ? errSecSuccess : 1;
}

inline bool SecTrustEvaluateWithError(SecTrustRef evaluated, void* error)
{
  assert(evaluated->what == trust && !error);
  std::vector<platform_certificate> chain;
  for (void const* const member : evaluated->members)
    chain.emplace_back(static_cast<object const*>(member)->on_linux.get(), [](void*) {});
  return is_trusted_on_linux(chain);
}

inline void CFRelease(void const* reference)
{
  auto const* const released = static_cast<object const*>(reference);
  for (int later = released->what + 1; later < kinds; ++later)
    assert(living[later] == 0);
  --living[released->what];
  delete released;
}
