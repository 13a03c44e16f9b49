#pragma once

// Stands in for two frameworks of macOS, so that platform_trust_macos.cpp runs on Linux and trusts
// what Linux trusts. Unexpected arguments, a release too many, too few or out of order end the
// process. An object cannot be made while an environment variable has the name of its kind.
#include "fetch/module/platform_trust.hpp"

#undef NDEBUG
#include <cassert>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

platform_certificate create_linux_certificate(std::span<unsigned char const> der);
bool is_trusted_on_linux(std::span<platform_certificate const> chain);

using CFIndex = long;
using CFDataRef = std::span<unsigned char const> const*;
using CFArrayRef = std::vector<void const*> const*;
using SecPolicyRef = int*;
using SecTrustRef = std::vector<void const*>*;
inline void const* const kCFAllocatorNull = "no deallocator";
constexpr int errSecSuccess = 0;

inline std::map<void const*, std::pair<std::string, std::shared_ptr<void>>> objects;
inline int const at_exit = std::atexit([] { assert(objects.empty()); });

template <typename Content>
Content* make(char const* kind, Content content)
{
  if (std::getenv(kind))
    return nullptr;
  auto const made = std::make_shared<Content>(std::move(content));
  objects[made.get()] = {kind, made};
  return made.get();
}

inline void CFRelease(void const* object)
{
  auto const [kind, content] = objects.at(object);
  objects.erase(object);
  for (auto const& [other, left] : objects)
    assert(left.first <= kind); // the order of release is that of the alphabet, from its end
}

inline CFDataRef CFDataCreateWithBytesNoCopy(void* allocator, unsigned char const* bytes,
                                             CFIndex length, void const* deallocator)
{
  assert(!allocator && deallocator == kCFAllocatorNull);
  return make("data", std::span{bytes, static_cast<std::size_t>(length)});
}

inline platform_certificate* SecCertificateCreateWithData(void* allocator, CFDataRef data)
{
  assert(!allocator);
  return make("certificate", create_linux_certificate(*data));
}

inline CFArrayRef CFArrayCreate(void* allocator, void const** values, CFIndex count, void* calls)
{
  assert(!allocator && !calls);
  return make("chain", std::vector(values, values + count));
}

inline SecPolicyRef SecPolicyCreateSSL(bool server, void* host_name)
{
  assert(server && !host_name);
  return make("policy", 0);
}

inline int SecTrustCreateWithCertificates(CFArrayRef chain, SecPolicyRef policy, SecTrustRef* trust)
{
  assert(objects.contains(chain) && objects.contains(policy));
  *trust = make("trust", *chain);
  return *trust ? errSecSuccess : 1;
}

inline bool SecTrustEvaluateWithError(SecTrustRef trust, void* error)
{
  assert(objects.contains(trust) && !error);
  std::vector<platform_certificate> chain;
  for (void const* const certificate : *trust)
    chain.emplace_back(static_cast<platform_certificate const*>(certificate)->get(), [](void*) {});
  return is_trusted_on_linux(chain);
}
