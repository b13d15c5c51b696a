// Types of the host's 2D drawing suites.
#ifndef DRAWBOTSUITETYPES_H
#define DRAWBOTSUITETYPES_H

#include <stdint.h>

#pragma pack(push, 8)

#ifdef __cplusplus
extern "C" {
#endif

// Each reference is its own opaque pointer type; none converts to another.
typedef struct DRAWBOT_OpaqueDrawRef* DRAWBOT_DrawRef;
typedef struct DRAWBOT_OpaqueSupplierRef* DRAWBOT_SupplierRef;
typedef struct DRAWBOT_OpaqueSurfaceRef* DRAWBOT_SurfaceRef;
typedef struct DRAWBOT_OpaqueImageRef* DRAWBOT_ImageRef;
typedef struct DRAWBOT_OpaquePathRef* DRAWBOT_PathRef;
typedef struct DRAWBOT_OpaquePenRef* DRAWBOT_PenRef;
typedef struct DRAWBOT_OpaqueBrushRef* DRAWBOT_BrushRef;
typedef struct DRAWBOT_OpaqueFontRef* DRAWBOT_FontRef;
typedef struct DRAWBOT_OpaqueObjectRef* DRAWBOT_ObjectRef;

typedef uint8_t DRAWBOT_Boolean;
typedef int DRAWBOT_PixelLayout;
typedef int DRAWBOT_FillType;

enum {
  kDRAWBOT_PixelLayout_24RGB = 0,
  kDRAWBOT_PixelLayout_24BGR = 1,
  kDRAWBOT_PixelLayout_32RGB = 2,
  kDRAWBOT_PixelLayout_32BGR = 3,
  kDRAWBOT_PixelLayout_32ARGB_Straight = 4,
  kDRAWBOT_PixelLayout_32ARGB_Premul = 5,
  kDRAWBOT_PixelLayout_32BGRA_Straight = 6,
  kDRAWBOT_PixelLayout_32BGRA_Premul = 7
};

typedef struct DRAWBOT_PointF32 {
  float x;
  float y;
} DRAWBOT_PointF32;

#ifdef __cplusplus
}
#endif

#pragma pack(pop)

#endif
