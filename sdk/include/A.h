// Basic scalar types and error codes shared by every host interface.
#ifndef A_H
#define A_H

#include <stdint.h>

#pragma pack(push, 8)

#ifdef __cplusplus
extern "C" {
#endif

typedef int32_t A_long;
typedef uint32_t A_u_long;
typedef int16_t A_short;
typedef uint16_t A_u_short;
typedef char A_char;
typedef uint8_t A_u_char;
typedef uint8_t A_Boolean;
typedef double A_FpLong;
typedef float A_FpShort;
typedef A_long A_Err;
typedef uint64_t A_u_longlong;
typedef A_u_longlong A_HandleSize;
typedef intptr_t A_intptr_t;

enum {
  A_Err_NONE = 0,
  A_Err_GENERIC = 1,
  A_Err_STRUCT = 2,
  A_Err_PARAMETER = 3,
  A_Err_ALLOC = 4,
  A_Err_MISSING_SUITE = 13
};

// Time as a rational value / scale.
typedef struct A_Time {
  A_long value;
  A_u_long scale;
} A_Time;

typedef struct A_Ratio {
  A_long num;
  A_u_long den;
} A_Ratio;

typedef struct A_LRect {
  A_long left;
  A_long top;
  A_long right;
  A_long bottom;
} A_LRect;

typedef struct A_FloatPoint {
  A_FpLong x;
  A_FpLong y;
} A_FloatPoint;

#ifdef __cplusplus
}
#endif

#pragma pack(pop)

#endif
