#include "params/CustomControl.h"

#include <cstddef>
#include <memory>
#include <new>

#include "params/CurveGraph.h"
#include "params/EventDrawing.h"
#include "params/ParamPositionTable.h"

namespace morvane {

CustomControl CurveGraphControl() {
  return CustomControl{
      .position = ParamPosition(ParamId::CurveGraph),
      .width = kCurveGraphSize,
      .height = kCurveGraphSize,
      .render = RenderCurveGraph,
      .shape = ParamId::StretchCurve,
      .phase = ParamId::CurvePhase,
      .smoothness = ParamId::CurveSmoothness,
  };
}

PF_Err DrawCustomControl(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                         PF_EventExtra* extra, const CustomControl& control) {
  PF_Err err = PF_Err_NONE;
  {
    EventDrawing drawing(in_data, out_data, extra->contextH);
    err = drawing.Error();
    const std::size_t bytes =
        static_cast<std::size_t>(control.width) * static_cast<std::size_t>(control.height) * 4;
    const std::unique_ptr<uint8_t[]> picture(new (std::nothrow) uint8_t[bytes]);
    if (err == PF_Err_NONE && picture != nullptr &&
        control.render(picture.get(), in_data, params, control) != 0 &&
        extra->effect_win.area == PF_EA_CONTROL) {
      err = drawing.DrawPicture({picture.get(), control.width, control.height},
                                extra->effect_win.current_frame);
    }
  }  // the picture, then the suites, are given back here
  if (err == PF_Err_NONE) extra->evt_out_flags = PF_EO_HANDLED_EVENT;
  return err;
}

}  // namespace morvane
