// Handle, world and pixel-format suites.
#ifndef AE_EFFECTCBSUITES_H
#define AE_EFFECTCBSUITES_H

#include <AE_Effect.h>
#include <SPBasic.h>

#pragma pack(push, 8)

#ifdef __cplusplus
extern "C" {
#endif

// The struct is named 1, the suite version it describes is 2.
#define kPFHandleSuite "PF Handle Suite"
#define kPFHandleSuiteVersion1 2

typedef struct PF_HandleSuite1 {
  SPAPI PF_Handle (*host_new_handle)(A_HandleSize size);
  SPAPI void* (*host_lock_handle)(PF_Handle pf_handle);
  SPAPI void (*host_unlock_handle)(PF_Handle pf_handle);
  SPAPI void (*host_dispose_handle)(PF_Handle pf_handle);
  SPAPI A_HandleSize (*host_get_handle_size)(PF_Handle pf_handle);
  // Size first; the handle may move.
  SPAPI PF_Err (*host_resize_handle)(A_HandleSize new_sizeL, PF_Handle* handlePH);
} PF_HandleSuite1;

#define kPFWorldSuite "PF World Suite"
#define kPFWorldSuiteVersion2 2

typedef struct PF_WorldSuite2 {
  SPAPI PF_Err (*PF_NewWorld)(PF_ProgPtr effect_ref, A_long widthL, A_long heightL,
                              PF_Boolean clear_pixB, PF_PixelFormat pixel_format,
                              PF_EffectWorld* worldP);
  SPAPI PF_Err (*PF_DisposeWorld)(PF_ProgPtr effect_ref, PF_EffectWorld* worldP);
  SPAPI PF_Err (*PF_GetPixelFormat)(const PF_EffectWorld* worldP, PF_PixelFormat* pixel_formatP);
} PF_WorldSuite2;

// After Effects' own pixel-format suite (the Premiere one is version 1).
#define kPFPixelFormatSuite "PF Pixel Format Suite"
#define kPFPixelFormatSuiteVersion2 2

typedef struct PF_PixelFormatSuite2 {
  SPAPI PF_Err (*PF_AddSupportedPixelFormat)(PF_ProgPtr effect_ref, PF_PixelFormat pixel_format);
  SPAPI PF_Err (*PF_ClearSupportedPixelFormats)(PF_ProgPtr effect_ref);
} PF_PixelFormatSuite2;

#ifdef __cplusplus
}
#endif

#pragma pack(pop)

#endif
