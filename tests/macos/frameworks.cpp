// Stands in for two frameworks of macOS, so that platform_trust_macos.cpp runs on Linux and trusts
// what Linux trusts. Unexpected arguments, a wrong order of release or an object left at exit end
// the process. What the variable REFUSED names cannot be made.
#include "fetch/module/platform_trust.hpp"

#include <Security/Security.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

// An object is released before those of the kinds above its own.
enum kind { certificate, array, policy, trust, data, kinds };
constexpr std::array<char const*, kinds> names{"certificate", "array", "policy", "trust", "data"};
std::array<int, kinds> living{};

struct object {
  kind what;
  std::span<unsigned char const> borrowed = {};
  std::vector<unsigned char> copy = {};
  platform_certificate on_linux = {nullptr, nullptr};
  std::vector<object const*> members = {};
};

void require(bool condition)
{
  if (!condition)
    std::abort();
}

[[maybe_unused]] int const at_exit =
    std::atexit([] { require(living == std::array<int, kinds>{}); });

bool refused(kind what)
{
  char const* const named = std::getenv("REFUSED");
  return named && std::string{named} == names[what];
}

template <typename Reference>
Reference make(object made)
{
  ++living[made.what];
  return reinterpret_cast<Reference>(new object{std::move(made)});
}

object const* object_of(void const* reference)
{
  return static_cast<object const*>(reference);
}

} // namespace

CFAllocatorRef const kCFAllocatorNull = reinterpret_cast<CFAllocatorRef>(&living);

CFDataRef CFDataCreateWithBytesNoCopy(CFAllocatorRef allocator, unsigned char const* bytes,
                                      CFIndex length, CFAllocatorRef deallocator)
{
  require(!allocator && deallocator == kCFAllocatorNull);
  std::span const borrowed{bytes, static_cast<std::size_t>(length)};
  return refused(data)
             ? nullptr
             : make<CFDataRef>(
                 {.what = data, .borrowed = borrowed, .copy = {borrowed.begin(), borrowed.end()}});
}

SecCertificateRef SecCertificateCreateWithData(CFAllocatorRef allocator, CFDataRef bytes)
{
  require(!allocator && bytes);
  auto made = create_platform_certificate(object_of(bytes)->borrowed);
  return refused(certificate) || !made
             ? nullptr
             : make<SecCertificateRef>({.what = certificate, .on_linux = std::move(made)});
}

CFArrayRef CFArrayCreate(CFAllocatorRef allocator, void const** values, CFIndex count,
                         CFArrayCallBacks const* callbacks)
{
  require(!allocator && !callbacks);
  std::vector<object const*> members;
  std::transform(values, values + count, std::back_inserter(members), object_of);
  return refused(array) ? nullptr : make<CFArrayRef>({.what = array, .members = members});
}

SecPolicyRef SecPolicyCreateSSL(unsigned char server, CFStringRef host_name)
{
  require(server && !host_name);
  return make<SecPolicyRef>({.what = policy});
}

OSStatus SecTrustCreateWithCertificates(CFTypeRef certificates, CFTypeRef policies,
                                        SecTrustRef* made)
{
  require(object_of(certificates)->what == array && object_of(policies)->what == policy);
  *made = make<SecTrustRef>({.what = trust, .members = object_of(certificates)->members});
  return refused(trust) ? -1 : errSecSuccess;
}

bool SecTrustEvaluateWithError(SecTrustRef evaluated, CFErrorRef* error)
{
  require(object_of(evaluated)->what == trust && !error);
  std::vector<platform_certificate> chain;
  for (auto const* member : object_of(evaluated)->members)
    chain.emplace_back(member->on_linux.get(), [](void*) {});
  return is_trusted_server(chain);
}

void CFRelease(CFTypeRef reference)
{
  auto const* const released = object_of(reference);
  require(std::ranges::equal(released->borrowed, released->copy));
  require(std::none_of(living.begin() + released->what + 1, living.end(), std::identity{}));
  --living[released->what];
  delete released;
}
