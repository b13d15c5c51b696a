#include "render/ReadRenderRecord.h"

#include <cstring>

#include "host/HostErrors.h"
#include "params/ControlTable.h"
#include "params/ParamCheckout.h"
#include "params/ParamId.h"
#include "params/ParamPositionTable.h"

namespace morvane {
namespace {

// Reads each control's value, in the control's own units, into the record, in the table's read
// order. A definition checked out from the host is checked in as soon as its value is copied,
// so a failing later read leaves nothing checked out.
void ReadValues(PF_InData* in_data, PF_ParamDef** params, StretchRenderRecord& record) {
  PF_ParamDef scratch;
  for (const Control* control : ControlsInReadOrder()) {
    const CheckedOutParam param(in_data, params, control->id, scratch);
    StoreValue(*control, ValueOf(*control, *param), record);
  }
}

void ThrowIfError(PF_Err err) {
  if (err != PF_Err_NONE) ThrowHostError(err);
}

}  // namespace

void ReadRenderRecord(PF_InData* in_data, PF_ParamDef* params[], PF_PreRenderExtra* extra,
                      StretchRenderRecord& record) {
  std::memset(&record, 0, sizeof record);
  ReadValues(in_data, params, record);

  const A_long layerPosition = DeclaredPosition(ParamId::IntensitySource);
  if (extra != nullptr) {
    // Only the request matters here; the pixels are fetched at render time.
    PF_CheckoutResult ignored;
    std::memset(&ignored, 0, sizeof ignored);
    ThrowIfError(extra->cb->checkout_layer(in_data->effect_ref, layerPosition, layerPosition,
                                           &extra->input->output_request, in_data->current_time,
                                           in_data->time_step, in_data->time_scale, &ignored));
  } else {
    CheckoutParamNow(in_data, ParamId::IntensitySource, record.intensityLayerParam);
    record.intensityLayer = &record.intensityLayerParam.u.ld;
  }
}

void CheckoutIntensityLayerPixels(PF_InData* in_data, PF_SmartRenderExtra* extra,
                                  StretchRenderRecord& record) {
  PF_EffectWorld* layer = nullptr;
  const PF_Err err = extra->cb->checkout_layer_pixels(
      in_data->effect_ref, DeclaredPosition(ParamId::IntensitySource), &layer);
  record.intensityLayer = layer;
  ThrowIfError(err);
}

void ReleaseIntensityLayer(PF_InData* in_data, PF_SmartRenderExtra* extra,
                           StretchRenderRecord& record) {
  if (extra != nullptr) {
    extra->cb->checkin_layer_pixels(in_data->effect_ref, ParamPosition(ParamId::IntensitySource));
  } else {
    in_data->inter.checkin_param(in_data->effect_ref, &record.intensityLayerParam);
  }
}

}  // namespace morvane
