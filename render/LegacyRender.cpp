#include "render/LegacyRender.h"

#include <cstring>
#include <optional>

#include "host/HostKind.h"
#include "host/ScopedSuite.h"
#include "render/DispatchStretch.h"
#include "render/PixelFormatDepth.h"
#include "render/ReadRenderRecord.h"

namespace morvane {
namespace {

// The "Intensity Source" definition held in the record, checked in again when
// the scope ends.
class IntensityLayerParam {
 public:
  IntensityLayerParam(PF_InData* in_data, StretchRenderRecord& record)
      : in_data_(in_data), record_(record) {}
  ~IntensityLayerParam() { ReleaseIntensityLayer(in_data_, nullptr, record_); }
  IntensityLayerParam(const IntensityLayerParam&) = delete;
  IntensityLayerParam& operator=(const IntensityLayerParam&) = delete;

 private:
  PF_InData* in_data_;
  StretchRenderRecord& record_;
};

// The effect's own layer (parameter 0) checked out at the current time, and
// checked in again when the scope ends if the host handed it out.
class InputLayerParam {
 public:
  explicit InputLayerParam(PF_InData* in_data) : in_data_(in_data) {
    std::memset(&def_, 0, sizeof def_);
    error_ = in_data->inter.checkout_param(in_data->effect_ref, 0, in_data->current_time,
                                           in_data->time_step, in_data->time_scale, &def_);
  }
  ~InputLayerParam() {
    if (error_ == PF_Err_NONE) in_data_->inter.checkin_param(in_data_->effect_ref, &def_);
  }
  InputLayerParam(const InputLayerParam&) = delete;
  InputLayerParam& operator=(const InputLayerParam&) = delete;

  PF_Err Error() const { return error_; }
  const PF_EffectWorld& World() const { return def_.u.ld; }

 private:
  PF_InData* in_data_;
  PF_ParamDef def_;
  PF_Err error_;
};

}  // namespace

PF_Err LegacyRender(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                    PF_LayerDef* output) {
  if (!IsPremiereHost(in_data)) return PF_Err_NONE;

  // The record stays here: `intensityLayer` points into its own
  // `intensityLayerParam`.
  StretchRenderRecord record;
  ReadRenderRecord(in_data, params, nullptr, record);
  const IntensityLayerParam intensityLayer(in_data, record);

  const ScopedSuite<PF_PixelFormatSuite1> formats(in_data, kPFPixelFormatSuite,
                                                  kPFPixelFormatSuiteVersion1, out_data);
  const InputLayerParam input(in_data);
  PF_Err result = input.Error();

  const float scale = static_cast<float>(output->width) / static_cast<float>(in_data->width);

  // If the host cannot tell, the output is taken to be 8-bit.
  PrPixelFormat format = PrPixelFormat_ARGB_4444_8u;
  formats->GetPixelFormat(output, &format);

  if (result == PF_Err_NONE) {
    const std::optional<PixelDepth> depth = DepthOfPremiereFormat(format);
    if (depth) {
      result = DispatchStretchInBandsForDepth(*depth, input.World(), *output,
                                              StretchRenderRecord(record), scale,
                                              HostBandRunnerOf(in_data));
    } else {
      result = PF_Err_UNRECOGNIZED_PARAM_TYPE;
    }
  }
  return result;
}

}  // namespace morvane
