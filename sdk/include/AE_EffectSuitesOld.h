// Earlier versions of the effect suites that are still served.
#ifndef AE_EFFECTSUITESOLD_H
#define AE_EFFECTSUITESOLD_H

#include <AE_Effect.h>
#include <AE_EffectUI.h>
#include <SPBasic.h>
#include <adobesdk/DrawbotSuite.h>

#pragma pack(push, 8)

#ifdef __cplusplus
extern "C" {
#endif

#define kPFEffectCustomUISuite "PF Effect Custom UI Suite"
#define kPFEffectCustomUISuiteVersion1 1

typedef struct PF_EffectCustomUISuite1 {
  SPAPI PF_Err (*PF_GetDrawingReference)(const PF_ContextH effect_contextH,
                                         DRAWBOT_DrawRef* referenceP0);
} PF_EffectCustomUISuite1;

#ifdef __cplusplus
}
#endif

#pragma pack(pop)

#endif
