#include "params/ParamCheckout.h"

#include "host/HostErrors.h"
#include "params/ParamPositionTable.h"

namespace morvane {

// Every control read through these functions is declared in every host, so a
// missing position means the parameter set-up failed part-way. Position 0 is
// the input layer: reading it in place of the control would take values from
// the wrong definition (and check the layer out twice), so the read fails.
PF_ParamIndex DeclaredPosition(ParamId id) {
  const int32_t position = ParamPosition(id);
  if (position <= 0) ThrowHostError(PF_Err_INVALID_INDEX);
  return position;
}

PF_ParamDef* CheckoutParamById(PF_InData* in_data, PF_ParamDef* params[], ParamId id,
                               PF_ParamDef& buffer) {
  if (params != nullptr) {
    // The host's array holds in_data->num_params entries. A table left from an earlier
    // set-up can name a position beyond it (a host that sends a command before this
    // module's parameter set-up): reading past the array would read the host's memory.
    const PF_ParamIndex position = DeclaredPosition(id);
    if (position >= in_data->num_params) ThrowHostError(PF_Err_INVALID_INDEX);
    return params[position];
  }
  return CheckoutParamNow(in_data, id, buffer);
}

PF_ParamDef* CheckoutParamNow(PF_InData* in_data, ParamId id, PF_ParamDef& buffer) {
  const PF_Err err = in_data->inter.checkout_param(in_data->effect_ref, DeclaredPosition(id),
                                                   in_data->current_time, in_data->time_step,
                                                   in_data->time_scale, &buffer);
  if (err != PF_Err_NONE) ThrowHostError(err);
  return &buffer;
}

CheckedOutParam::CheckedOutParam(PF_InData* in_data, PF_ParamDef* params[], ParamId id,
                                 PF_ParamDef& buffer)
    : in_data_(in_data),
      def_(CheckoutParamById(in_data, params, id, buffer)),
      fromHost_(params == nullptr) {}

CheckedOutParam::~CheckedOutParam() {
  // The answer is of no use here: the value was already copied.
  if (fromHost_) in_data_->inter.checkin_param(in_data_->effect_ref, def_);
}

}  // namespace morvane
