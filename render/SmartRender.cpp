#include "render/SmartRender.h"

#include <optional>

#include "host/ScopedSuite.h"
#include "render/DispatchStretch.h"
#include "render/HandleGuards.h"
#include "render/PixelFormatDepth.h"
#include "render/PreRenderData.h"
#include "render/ReadRenderRecord.h"
#include "render/UnionRect.h"

namespace morvane {
namespace {

// The effect's own layer is both parameter 0 and checkout 0.
constexpr A_long kInputLayer = 0;

using HandleSuite = ScopedSuite<PF_HandleSuite1>;

// The input layer's pixels, checked in again when the scope ends unless
// Checkin() already did so.
class InputPixels {
 public:
  InputPixels(PF_InData* in_data, PF_SmartRenderExtra* extra)
      : in_data_(in_data),
        extra_(extra),
        error_(extra->cb->checkout_layer_pixels(in_data->effect_ref, kInputLayer, &world_)),
        checkedOut_(error_ == PF_Err_NONE) {}
  ~InputPixels() { Checkin(); }
  InputPixels(const InputPixels&) = delete;
  InputPixels& operator=(const InputPixels&) = delete;

  PF_Err Error() const { return error_; }
  PF_EffectWorld* World() const { return world_; }

  PF_Err Checkin() {
    if (!checkedOut_) return PF_Err_NONE;
    checkedOut_ = false;
    return extra_->cb->checkin_layer_pixels(in_data_->effect_ref, kInputLayer);
  }

 private:
  PF_InData* in_data_;
  PF_SmartRenderExtra* extra_;
  PF_EffectWorld* world_ = nullptr;
  PF_Err error_;
  bool checkedOut_;
};

// Gives the intensity layer's pixels back when the scope ends.
class IntensityLayerPixels {
 public:
  IntensityLayerPixels(PF_InData* in_data, PF_SmartRenderExtra* extra, StretchRenderRecord& record)
      : in_data_(in_data), extra_(extra), record_(record) {
    CheckoutIntensityLayerPixels(in_data, extra, record);
  }
  ~IntensityLayerPixels() { ReleaseIntensityLayer(in_data_, extra_, record_); }
  IntensityLayerPixels(const IntensityLayerPixels&) = delete;
  IntensityLayerPixels& operator=(const IntensityLayerPixels&) = delete;

 private:
  PF_InData* in_data_;
  PF_SmartRenderExtra* extra_;
  StretchRenderRecord& record_;
};

// Renders with both images present; returns the result so far or the
// depth failure.
PF_Err RenderFrame(PF_InData* in_data, PF_OutData* out_data, PF_SmartRenderExtra* extra,
                   PreRenderData& data, const PF_EffectWorld& input, PF_EffectWorld& output,
                   PF_Err result) {
  const IntensityLayerPixels layer(in_data, extra, data.record);
  // Only the horizontal factor scales the render.
  const float scale =
      static_cast<float>(in_data->downsample_x.num) / static_cast<float>(in_data->downsample_x.den);

  const ScopedSuite<PF_WorldSuite2> worlds(in_data, kPFWorldSuite, kPFWorldSuiteVersion2, out_data);
  PF_PixelFormat format = PF_PixelFormat_INVALID;
  if (result == PF_Err_NONE) result = worlds->PF_GetPixelFormat(&input, &format);
  const std::optional<PixelDepth> depth = DepthOfWorldFormat(format);
  if (!depth) return PF_Err_UNRECOGNIZED_PARAM_TYPE;
  if (result == PF_Err_NONE) {
    // Bands of lines on the host's threads; a cancelled render returns PF_Interrupt_CANCEL and
    // the callers' guards check everything in.
    result = DispatchStretchInBandsForDepth(*depth, input, output, StretchRenderRecord(data.record),
                                            scale, HostBandRunnerOf(in_data));
  }
  return result;
}

}  // namespace

PF_Err SmartPreRender(PF_InData* in_data, PF_OutData* out_data, PF_PreRenderExtra* extra) {
  const PF_RenderRequest request = extra->input->output_request;
  const HandleSuite handles(in_data, kPFHandleSuite, kPFHandleSuiteVersion1, out_data);

  OwnedHandle handle(handles.get(), sizeof(PreRenderData));
  if (handle.get() == nullptr) return PF_Err_OUT_OF_MEMORY;

  PF_Err result = PF_Err_NONE;
  {
    const LockedHandle locked(handles.get(), handle.get());
    auto* data = static_cast<PreRenderData*>(locked.get());
    if (data == nullptr) return PF_Err_OUT_OF_MEMORY;
    ReadRenderRecord(in_data, nullptr, extra, data->record);
    data->disposeHandle = handles->host_dispose_handle;

    PF_CheckoutResult checkout{};
    result = extra->cb->checkout_layer(in_data->effect_ref, kInputLayer, kInputLayer, &request,
                                       in_data->current_time, in_data->time_step,
                                       in_data->time_scale, &checkout);
    if (result == PF_Err_NONE) {
      UnionRect(checkout.result_rect, extra->output->result_rect);
      UnionRect(checkout.max_result_rect, extra->output->max_result_rect);
    }
  }
  // A failed pre-render is not rendered, so its data is disposed of here.
  if (result == PF_Err_NONE) {
    extra->output->pre_render_data = handle.Release();
    extra->output->delete_pre_render_data_func = DeletePreRenderData;
  }
  return result;
}

PF_Err SmartRender(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* /*params*/[],
                   PF_SmartRenderExtra* extra) {
  const HandleSuite handles(in_data, kPFHandleSuite, kPFHandleSuiteVersion1, out_data);
  const LockedHandle locked(handles.get(), static_cast<PF_Handle>(extra->input->pre_render_data));
  auto* data = static_cast<PreRenderData*>(locked.get());
  if (data == nullptr) return PF_Err_INTERNAL_STRUCT_DAMAGED;

  InputPixels input(in_data, extra);
  PF_Err result = input.Error();
  PF_EffectWorld* output = nullptr;
  if (result == PF_Err_NONE) result = extra->cb->checkout_output(in_data->effect_ref, &output);

  // Without both images nothing is rendered and the output stays as the host made it.
  if (input.World() != nullptr && output != nullptr) {
    result = RenderFrame(in_data, out_data, extra, *data, *input.World(), *output, result);
  }

  const PF_Err checkin = input.Checkin();
  if (result == PF_Err_NONE) result = checkin;
  return result;
}

}  // namespace morvane
