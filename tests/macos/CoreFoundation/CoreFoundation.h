#pragma once

// Declares the calls of the two frameworks that platform_trust_macos.cpp makes, for frameworks.cpp.

struct object;
using CFIndex = long;
using CFTypeRef = void const*;
using CFAllocatorRef = void const*;
using CFDataRef = object const*;
using CFArrayRef = object const*;
using SecCertificateRef = object*;
using SecPolicyRef = object*;
using SecTrustRef = object*;

extern "C" {
extern CFAllocatorRef const kCFAllocatorNull;
CFDataRef CFDataCreateWithBytesNoCopy(CFAllocatorRef allocator, unsigned char const* bytes,
                                      CFIndex length, CFAllocatorRef deallocator);
CFArrayRef CFArrayCreate(CFAllocatorRef allocator, void const** values, CFIndex count,
                         struct CFArrayCallBacks const* callbacks);
void CFRelease(CFTypeRef reference);
SecCertificateRef SecCertificateCreateWithData(CFAllocatorRef allocator, CFDataRef bytes);
SecPolicyRef SecPolicyCreateSSL(unsigned char server, struct CFString const* host_name);
int SecTrustCreateWithCertificates(CFTypeRef certificates, CFTypeRef policies, SecTrustRef* made);
bool SecTrustEvaluateWithError(SecTrustRef evaluated, struct CFError** error);
enum { errSecSuccess = 0 };
}
