// Declares what platform_trust_macos.cpp uses of the framework of this name.
#pragma once

typedef long CFIndex;
typedef void const* CFTypeRef;
typedef struct Allocator const* CFAllocatorRef;
typedef struct ArrayCallBacks CFArrayCallBacks;
typedef struct Array const* CFArrayRef;
typedef struct Data const* CFDataRef;
typedef struct Error* CFErrorRef;
typedef struct String const* CFStringRef;

extern "C" {
extern CFAllocatorRef const kCFAllocatorNull;
CFDataRef CFDataCreateWithBytesNoCopy(CFAllocatorRef, unsigned char const*, CFIndex,
                                      CFAllocatorRef deallocator);
CFArrayRef CFArrayCreate(CFAllocatorRef, void const** values, CFIndex, CFArrayCallBacks const*);
void CFRelease(CFTypeRef);
}
