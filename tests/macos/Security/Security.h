// Declares what platform_trust_macos.cpp uses of the framework of this name.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

typedef int OSStatus;
typedef struct Certificate* SecCertificateRef;
typedef struct Policy* SecPolicyRef;
typedef struct Trust* SecTrustRef;
enum { errSecSuccess = 0 };

extern "C" {
SecCertificateRef SecCertificateCreateWithData(CFAllocatorRef, CFDataRef);
SecPolicyRef SecPolicyCreateSSL(unsigned char server, CFStringRef host_name);
OSStatus SecTrustCreateWithCertificates(CFTypeRef certificates, CFTypeRef policies, SecTrustRef*);
bool SecTrustEvaluateWithError(SecTrustRef, CFErrorRef*);
}
