#include "params/UpdateParamsUI.h"

#include <array>

#include "host/SuiteCache.h"
#include "params/ParamCheckout.h"
#include "params/ParamId.h"
#include "params/ParamPositionTable.h"

namespace morvane {
namespace {

constexpr A_long kShadingNone = 1;
constexpr A_long kEdgeTransparent = 4;

// The shading group in update order; the first one stands for the whole group.
constexpr std::array kShadingGroup{ParamId::ShadingIntervalSize, ParamId::ShadingIntervalPhase,
                                   ParamId::ShadingChannels, ParamId::ShadingOpacity};

constexpr PF_ParamUIFlags UIFlagsFor(bool disabled) {
  return disabled ? PF_PUI_DISABLED : 0;
}

class UIUpdater {
 public:
  UIUpdater(PF_InData* in_data, PF_ParamDef** params)
      : in_data_(in_data), params_(params), suites_(in_data->pica_basicP) {}

  A_long PopupValue(ParamId id) {
    PF_ParamDef buffer;
    const CheckedOutParam param(in_data_, params_, id, buffer);
    return param->u.pd.value;
  }

  // Exact comparison: any other combination of bits counts as enabled.
  bool ShownDisabled(ParamId id) {
    PF_ParamDef buffer;
    const CheckedOutParam param(in_data_, params_, id, buffer);
    return param->ui_flags == PF_PUI_DISABLED;
  }

  // Hands the host a copy of the control's definition with the new flags
  // (replacing the whole word), unless an earlier call of this command failed.
  void Update(ParamId id, PF_ParamUIFlags flags) {
    PF_ParamDef buffer;
    const CheckedOutParam param(in_data_, params_, id, buffer);
    PF_ParamDef def = *param;
    def.ui_flags = flags;
    if (result_ != PF_Err_NONE) return;
    result_ =
        suites_.ParamUtilsSuite()->PF_UpdateParamUI(in_data_->effect_ref, ParamPosition(id), &def);
  }

  PF_Err Result() const { return result_; }

 private:
  PF_InData* in_data_;
  PF_ParamDef** params_;
  SuiteCache suites_;
  PF_Err result_ = PF_Err_NONE;
};

}  // namespace

PF_Err UpdateParamsUI(PF_InData* in_data, PF_OutData* /*out_data*/, PF_ParamDef* params[]) {
  UIUpdater updater(in_data, params);

  const bool shadingOff = updater.PopupValue(ParamId::Shading) == kShadingNone;
  if (shadingOff != updater.ShownDisabled(kShadingGroup.front())) {
    for (const ParamId id : kShadingGroup)
      updater.Update(id, UIFlagsFor(shadingOff));
  }

  const bool edgeNotTransparent = updater.PopupValue(ParamId::EdgeMode) != kEdgeTransparent;
  if (edgeNotTransparent != updater.ShownDisabled(ParamId::TransparencyFeather)) {
    updater.Update(ParamId::TransparencyFeather, UIFlagsFor(edgeNotTransparent));
  }
  return updater.Result();
}

}  // namespace morvane
