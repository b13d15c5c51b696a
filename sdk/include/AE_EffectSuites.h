// Parameter-utility and custom-UI suites.
#ifndef AE_EFFECTSUITES_H
#define AE_EFFECTSUITES_H

#include <AE_Effect.h>
#include <AE_EffectSuitesOld.h>
#include <AE_EffectUI.h>
#include <SPBasic.h>

#pragma pack(push, 8)

#ifdef __cplusplus
extern "C" {
#endif

#define kPFParamUtilsSuite "PF Param Utils Suite"
#define kPFParamUtilsSuiteVersion3 3

typedef struct PF_ParamUtilsSuite3 {
  // Changes a parameter's UI (flags, size, name, slider ranges) outside of
  // parameter setup.
  SPAPI PF_Err (*PF_UpdateParamUI)(PF_ProgPtr effect_ref, PF_ParamIndex param_index,
                                   const PF_ParamDef* defP);
  void* PF_GetCurrentState;
  void* PF_AreStatesIdentical;
  void* PF_IsIdenticalCheckout;
  void* PF_FindKeyframeTime;
  void* PF_GetKeyframeCount;
  void* PF_CheckoutKeyframe;
  void* PF_CheckinKeyframe;
  void* PF_KeyIndexToTime;
} PF_ParamUtilsSuite3;

#define kPFEffectCustomUISuiteVersion2 2

typedef struct PF_EffectCustomUISuite2 {
  SPAPI PF_Err (*PF_GetDrawingReference)(const PF_ContextH effect_contextH,
                                         DRAWBOT_DrawRef* referenceP0);
  void* PF_GetContextAsyncManager;
} PF_EffectCustomUISuite2;

#ifdef __cplusplus
}
#endif

#pragma pack(pop)

#endif
