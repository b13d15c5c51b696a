// Fixed-point conversions and error-chaining helpers.
#ifndef AE_MACROS_H
#define AE_MACROS_H

#include <string.h>

#include <A.h>

#define A_Fixed_ONE ((A_long)0x00010000)
#define A_Fixed_HALF ((A_long)0x00008000)

// 16.16 fixed point: 65536 is 1.0.
#define FIX2INT(x) ((A_long)(x) >> 16)
#define INT2FIX(x) ((A_long)(x) << 16)
#define FIX2INT_ROUND(x) (FIX2INT((x) + 32768))
#define FIX_2_FLOAT(x) ((A_FpLong)(x) / 65536.0)
// Rounds half away from zero.
#define FLOAT2FIX(f) ((A_long)((A_FpLong)(f)*65536.0 + (((A_FpLong)(f) < 0) ? -0.5 : 0.5)))
#define RATIO2FLOAT(r) ((A_FpLong)(r).num / (A_FpLong)(r).den)

// Runs expr only while the local `err` is still zero.
#define ERR(expr)   \
  do {              \
    if (!err) {     \
      err = (expr); \
    }               \
  } while (0)

// Always runs expr; keeps the first error in `err`. Needs a local `err2`.
#define ERR2(expr)                        \
  do {                                    \
    if (((err2 = (expr)) != 0) && !err) { \
      err = err2;                         \
    }                                     \
  } while (0)

#define AEFX_CLR_STRUCT(s) memset(&(s), 0, sizeof(s))

// Dereferences a handle.
#define DH(h) (*(h))

#endif
