#include "render/ReadRenderRecord.h"

#include <cstring>

#include "host/HostErrors.h"
#include "params/ParamCheckout.h"
#include "params/ParamId.h"
#include "params/ParamPositionTable.h"

namespace morvane {
namespace {

// Reads one control at a time into a scratch definition shared by all reads.
// A definition checked out from the host is checked in as soon as its value is
// copied, so a failing later read leaves nothing checked out.
class ValueReader {
 public:
  ValueReader(PF_InData* in_data, PF_ParamDef** params) : in_data_(in_data), params_(params) {}

  // Popups arrive 1-based and are stored 0-based.
  int32_t Popup(ParamId id) { return Read(id).u.pd.value - 1; }
  double Slider(ParamId id) { return Read(id).u.fs_d.value; }
  int32_t Angle(ParamId id) { return Read(id).u.ad.value; }
  int32_t Checkbox(ParamId id) { return Read(id).u.bd.value; }
  // Truncated toward zero: 10.9 gives 10.
  int32_t WholeSlider(ParamId id) { return static_cast<int32_t>(Read(id).u.fs_d.value); }

 private:
  PF_ParamDef Read(ParamId id) {
    const CheckedOutParam param(in_data_, params_, id, scratch_);
    return *param;
  }

  PF_InData* in_data_;
  PF_ParamDef** params_;
  PF_ParamDef scratch_;
};

void ReadValues(PF_InData* in_data, PF_ParamDef** params, StretchRenderRecord& record) {
  ValueReader read(in_data, params);
  record.channelMode = read.Popup(ParamId::Channels);
  record.direction = read.Popup(ParamId::Direction);
  record.intensity = read.Slider(ParamId::MorvaneIntensity);
  record.stretchAmount = read.Slider(ParamId::Morvane);
  record.pixelSize = read.Slider(ParamId::PixelSize);
  record.startOffset = read.Slider(ParamId::StretchStartOffset);
  record.imageShiftPhase = read.Angle(ParamId::ImageShiftPhase);
  record.imageShiftPhaseSync = read.Checkbox(ParamId::ImageShiftPhaseSync);
  record.curveShape = read.Popup(ParamId::StretchCurve);
  record.curvePhase = read.Angle(ParamId::CurvePhase);
  record.curveSmoothness = read.Slider(ParamId::CurveSmoothness);
  record.shadingMode = read.Popup(ParamId::Shading);
  record.shadingIntervalSize = read.WholeSlider(ParamId::ShadingIntervalSize);
  record.shadingIntervalPhase = read.Angle(ParamId::ShadingIntervalPhase);
  record.shadingChannels = read.Popup(ParamId::ShadingChannels);
  record.edgeMode = read.Popup(ParamId::EdgeMode);
  record.distributionMode = read.Popup(ParamId::DistributionMode);
  record.distributionRange = read.Slider(ParamId::DistributionRange);
  record.shadingOpacity = read.Slider(ParamId::ShadingOpacity);
  record.transparencyFeather = read.Slider(ParamId::TransparencyFeather);
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
