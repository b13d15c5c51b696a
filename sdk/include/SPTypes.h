// Basic types of the suite-access layer.
#ifndef SPTYPES_H
#define SPTYPES_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef int32_t int32;

typedef int32 SPErr;
#if defined(__APPLE__)
typedef uint8_t SPBoolean;
#else
typedef int32 SPBoolean;
#endif

#ifdef __cplusplus
}
#endif

// Calling-convention marker in front of suite function pointers (none needed).
#define SPAPI

#endif
