// Platform selection for the host-interface headers. Must be included before
// every other host header: entry.h and PrSDKAESupport.h depend on it.
#ifndef AECONFIG_H
#define AECONFIG_H

#if defined(_WIN32)
#define AE_OS_WIN
#elif defined(__APPLE__)
#define AE_OS_MAC
#elif defined(__linux__)
// Not a host platform: lets the effect build and run natively on Linux
// against a simulated host.
#define AE_OS_LINUX
#else
#error "unrecognized AE platform"
#endif

#endif
