#include "params/HeaderBanner.h"

#include <cstdint>

namespace morvane {
namespace {

constexpr int32_t kBannerWidth = 320;
constexpr int32_t kBannerHeight = 17;

constexpr uint8_t kBannerPixels[] = {
#include "params/HeaderBanner.inc"
};
static_assert(sizeof kBannerPixels == kBannerWidth * kBannerHeight * 4);

}  // namespace

BgraPicture HeaderBannerPicture() {
  return {kBannerPixels, kBannerWidth, kBannerHeight};
}

PF_Err DrawHeader(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* /*params*/[],
                  PF_EventExtra* extra, const BgraPicture& picture) {
  PF_Err err = PF_Err_NONE;
  {
    EventDrawing drawing(in_data, out_data, extra->contextH);
    err = drawing.Error();
    if (err == PF_Err_NONE) {
      const PF_EffectWindowInfo& win = extra->effect_win;
      const PF_LRect& frame =
          win.area == PF_EA_PARAM_TITLE ? win.param_title_frame : win.current_frame;
      err = drawing.DrawPicture(picture, frame);
    }
  }  // the suites are given back here
  if (err == PF_Err_NONE) extra->evt_out_flags = PF_EO_HANDLED_EVENT;
  return err;
}

}  // namespace morvane
