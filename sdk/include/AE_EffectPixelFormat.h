// Pixel formats of effect worlds (four characters, first one in the low byte).
#ifndef AE_EFFECTPIXELFORMAT_H
#define AE_EFFECTPIXELFORMAT_H

#include <AE_Effect.h>

enum {
  PF_PixelFormat_ARGB32 = 0x62677261,   // "argb": 8 bits per channel
  PF_PixelFormat_ARGB64 = 0x36316561,   // "ae16": 16 bits per channel
  PF_PixelFormat_ARGB128 = 0x32336561,  // "ae32": float channels
  PF_PixelFormat_BGRA32 = 0x61726762,   // "bgra"
  PF_PixelFormat_INVALID = 0x66646162   // "badf"
};

#endif
