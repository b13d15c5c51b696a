// Pixel formats of the Premiere-family hosts.
#ifndef PRSDKPIXELFORMAT_H
#define PRSDKPIXELFORMAT_H

#include <stdint.h>

// Packs four characters with the first one in the low byte.
#define MAKE_PIXEL_FORMAT_FOURCC(ch0, ch1, ch2, ch3)                                               \
  ((uint32_t)(uint8_t)(ch0) | ((uint32_t)(uint8_t)(ch1) << 8) | ((uint32_t)(uint8_t)(ch2) << 16) | \
   ((uint32_t)(uint8_t)(ch3) << 24))

// A real enumeration: integers do not convert to it implicitly.
enum PrPixelFormat {
  PrPixelFormat_BGRA_4444_8u = 0x61726762,   // "bgra"
  PrPixelFormat_ARGB_4444_8u = 0x62677261,   // "argb"
  PrPixelFormat_ARGB_4444_16u = 0x62677241,  // "Argb"
  PrPixelFormat_ARGB_4444_32f = 0x62675241,  // "ARgb"
  PrPixelFormat_Invalid = 0x66646162         // "badf"
};

#endif
