#include "host/GlobalSetup.h"

#include <initializer_list>

#include "host/EffectIdentity.h"
#include "host/HostKind.h"
#include "host/ScopedSuite.h"

namespace morvane {

static_assert(kGlobalOutFlags == (PF_OutFlag_CUSTOM_UI | PF_OutFlag_DEEP_COLOR_AWARE |
                                  PF_OutFlag_SEND_UPDATE_PARAMS_UI));
static_assert(kGlobalOutFlags2 ==
              (PF_OutFlag2_I_AM_THREADSAFE | PF_OutFlag2_SUPPORTS_SMART_RENDER |
               PF_OutFlag2_FLOAT_COLOR_AWARE | PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA |
               PF_OutFlag2_SUPPORTS_THREADED_RENDERING));

namespace {

// Premiere hands over frames in the same ARGB layouts as After Effects at all
// three depths, and checked-out frames in the render's own format.
void DeclarePremiereFormats(const PF_InData* in_data, PF_OutData* out_data) {
  ScopedSuite<PF_PixelFormatSuite1> pixelFormats(in_data, kPFPixelFormatSuite,
                                                 kPFPixelFormatSuiteVersion1, out_data);
  pixelFormats->ClearSupportedPixelFormats(in_data->effect_ref);
  for (const PrPixelFormat format :
       {PrPixelFormat_ARGB_4444_8u, PrPixelFormat_ARGB_4444_16u, PrPixelFormat_ARGB_4444_32f}) {
    pixelFormats->AddSupportedPixelFormat(in_data->effect_ref, format);
  }
  ScopedSuite<PF_UtilitySuite4> utility(in_data, kPFUtilitySuite, kPFUtilitySuiteVersion4,
                                        out_data);
  utility->EffectWantsCheckedOutFramesToMatchRenderPixelFormat(in_data->effect_ref);
}

}  // namespace

PF_Err GlobalSetup(const PF_InData* in_data, PF_OutData* out_data) {
  out_data->my_version = kEffectVersionWord;
  out_data->out_flags = kGlobalOutFlags;
  out_data->out_flags2 = kGlobalOutFlags2;
  if (IsPremiereHost(in_data)) DeclarePremiereFormats(in_data, out_data);
  return PF_Err_NONE;
}

}  // namespace morvane
