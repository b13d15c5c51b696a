#include "params/CustomUIEvent.h"

#include "params/CustomControl.h"
#include "params/HeaderBanner.h"
#include "params/HostGates.h"
#include "params/ParamId.h"
#include "params/ParamPositionTable.h"

namespace morvane {
namespace {

// Interface 13.23 shows the banner as a named control and draws it in the control area; every
// other host draws it in the control's title row.
PF_EffectArea HeaderArea(const PF_InData* in_data) {
  const bool aboutControl = in_data->version.major == 13 && in_data->version.minor == 23;
  return aboutControl ? PF_EA_CONTROL : PF_EA_PARAM_TITLE;
}

// Position 0 is the input layer: a control that was not declared has no position.
bool IsControlAt(int32_t position, PF_ParamIndex index) {
  return position != 0 && position == index;
}

}  // namespace

bool DoubleClickDetector::Click(uint32_t when) {
  if (when - lastClick_ < kMaxInterval) {
    lastClick_ = kNoClick;
    return true;
  }
  lastClick_ = when;
  return false;
}

DoubleClickDetector& HeaderClickDetector() {
  static DoubleClickDetector detector;
  return detector;
}

PF_Err HandleCustomUIEvent(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                           PF_EventExtra* extra, ShowAboutFn showAbout) {
  if (!IsRecentHost(in_data) && !IsPremiereHost(in_data)) return PF_Err_NONE;

  const CustomControl curveGraph = CurveGraphControl();
  const int32_t header = ParamPosition(ParamId::Header);
  const PF_EffectWindowInfo& win = extra->effect_win;

  switch (extra->e_type) {
    case PF_Event_DRAW:
      if (IsControlAt(header, win.index)) {
        if (win.area != HeaderArea(in_data)) return PF_Err_NONE;
        return DrawHeader(in_data, out_data, params, extra, HeaderBannerPicture());
      }
      if (win.area == PF_EA_CONTROL && IsControlAt(curveGraph.position, win.index)) {
        return DrawCustomControl(in_data, out_data, params, extra, curveGraph);
      }
      return PF_Err_NONE;
    case PF_Event_DO_CLICK:
      if (IsControlAt(header, win.index) && HeaderClickDetector().Click(extra->u.do_click.when)) {
        const PF_Err err = showAbout(in_data, out_data);
        out_data->out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
        return err;
      }
      return PF_Err_NONE;
    default:
      return PF_Err_NONE;
  }
}

}  // namespace morvane
