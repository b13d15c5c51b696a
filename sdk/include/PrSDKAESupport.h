// Suites the Premiere-family hosts offer to effects.
#ifndef PRSDKAESUPPORT_H
#define PRSDKAESUPPORT_H

#include <AE_Effect.h>
#include <PrSDKPixelFormat.h>
#include <SPBasic.h>

#pragma pack(push, 8)

#ifdef __cplusplus
extern "C" {
#endif

#define kPFPixelFormatSuite "PF Pixel Format Suite"
#define kPFPixelFormatSuiteVersion1 1

#define kPFUtilitySuite "PF Utility Suite"
#define kPFUtilitySuiteVersion4 4

typedef struct PF_PixelFormatSuite {
  SPAPI PF_Err (*AddSupportedPixelFormat)(PF_ProgPtr effect_ref, PrPixelFormat pixelFormat);
  SPAPI PF_Err (*ClearSupportedPixelFormats)(PF_ProgPtr effect_ref);
  void* NewWorldOfPixelFormat;
  void* DisposeWorld;
  SPAPI PF_Err (*GetPixelFormat)(PF_EffectWorld* inWorld, PrPixelFormat* pixelFormat);
  void* GetBlackForPixelFormat;
  void* GetWhiteForPixelFormat;
  void* ConvertColorToPixelFormattedData;
} PF_PixelFormatSuite1;

typedef struct PF_UtilitySuite4 {
  void* GetFilterInstanceID;
  void* GetMediaTimecode;
  void* GetClipSpeed;
  void* GetClipDuration;
  void* GetClipStart;
  void* GetUnscaledClipDuration;
  void* GetUnscaledClipStart;
  void* GetTrackItemStart;
  void* GetMediaFieldType;
  void* GetMediaFrameRate;
  void* GetContainingTimelineID;
  void* GetClipName;
  // Asks the host to check out input frames in the render's pixel format.
  SPAPI PF_Err (*EffectWantsCheckedOutFramesToMatchRenderPixelFormat)(PF_ProgPtr effect_ref);
} PF_UtilitySuite4;

#ifdef __cplusplus
}
#endif

#pragma pack(pop)

#endif
