// Stands in for two frameworks of macOS, so that platform_trust_macos.cpp runs on Linux and trusts
// what Linux trusts. Unexpected arguments, a wrong order of release and an object left at exit end
// the process. What the variable REFUSED names cannot be made.
#include "fetch/module/platform_trust.hpp"

#include <Security/Security.h>

#include <cstdlib>
#include <string>
#include <vector>

// An object is released after those of the kinds that stand behind its own.
enum kind { certificate, array, policy, trust, data, kinds };
constexpr char const* names[]{"certificate", "array", "policy", "trust", "data"};

struct object {
  kind what;
  std::span<unsigned char const> bytes = {};
  platform_certificate on_linux = {nullptr, nullptr};
  std::vector<void const*> members = {};
};

namespace {

int living[kinds];

void require(bool condition)
{
  if (!condition)
    std::abort();
}

[[maybe_unused]] int const at_exit = std::atexit([] {
  for (int const count : living)
    require(count == 0);
});

object* make(object made)
{
  char const* const refused = std::getenv("REFUSED");
  if (refused && refused == std::string{names[made.what]})
    return nullptr;
  ++living[made.what];
  return new object{std::move(made)};
}

} // namespace

CFAllocatorRef const kCFAllocatorNull = "no deallocator";

CFDataRef CFDataCreateWithBytesNoCopy(CFAllocatorRef allocator, unsigned char const* bytes,
                                      CFIndex length, CFAllocatorRef deallocator)
{
  require(!allocator && deallocator == kCFAllocatorNull);
  return make({.what = data, .bytes = {bytes, static_cast<std::size_t>(length)}});
}

SecCertificateRef SecCertificateCreateWithData(CFAllocatorRef allocator, CFDataRef bytes)
{
  require(!allocator && bytes->what == data);
  return make({.what = certificate, .on_linux = create_platform_certificate(bytes->bytes)});
}

CFArrayRef CFArrayCreate(CFAllocatorRef allocator, void const** values, CFIndex count,
                         CFArrayCallBacks const* callbacks)
{
  require(!allocator && !callbacks);
  return make({.what = array, .members = std::vector(values, values + count)});
}

SecPolicyRef SecPolicyCreateSSL(unsigned char server, CFString const* host_name)
{
  require(server && !host_name);
  return make({.what = policy});
}

int SecTrustCreateWithCertificates(CFTypeRef certificates, CFTypeRef policies, SecTrustRef* made)
{
  auto const* const chain = static_cast<object const*>(certificates);
  require(chain->what == array && static_cast<object const*>(policies)->what == policy);
  *made = make({.what = trust, .members = chain->members});
  return *made ? errSecSuccess : 1;
}

bool SecTrustEvaluateWithError(SecTrustRef evaluated, CFError** error)
{
  require(evaluated->what == trust && !error);
  std::vector<platform_certificate> chain;
  for (void const* const member : evaluated->members)
    chain.emplace_back(static_cast<object const*>(member)->on_linux.get(), [](void*) {});
  return is_trusted_server(chain);
}

void CFRelease(CFTypeRef reference)
{
  auto const* const released = static_cast<object const*>(reference);
  for (int later = released->what + 1; later < kinds; ++later)
    require(living[later] == 0);
  --living[released->what];
  delete released;
}
