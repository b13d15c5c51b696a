#include "tests/params/FakeHost.h"

#include <cstring>

namespace morvane::testing {
namespace {

PF_Err AddParam(PF_ProgPtr effect_ref, PF_ParamIndex index, PF_ParamDefPtr def) {
  if (index != -1) return PF_Err_BAD_CALLBACK_PARAM;
  FakeHost::From(effect_ref).added.push_back(*def);
  return PF_Err_NONE;
}

PF_Err RegisterUI(PF_ProgPtr /*effect_ref*/, PF_CustomUIInfo* /*info*/) {
  return PF_Err_NONE;
}

PF_Err CheckoutParam(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long /*what_time*/,
                     A_long /*time_step*/, A_u_long /*time_scale*/, PF_ParamDef* param) {
  FakeHost& host = FakeHost::From(effect_ref);
  host.checkouts.push_back(index);
  if (const auto failure = host.checkoutErrors.find(index); failure != host.checkoutErrors.end()) {
    ++host.failedCheckouts;
    return failure->second;
  }
  *param = host.At(index);
  return PF_Err_NONE;
}

PF_Err CheckinParam(PF_ProgPtr effect_ref, PF_ParamDef* param) {
  FakeHost::From(effect_ref).checkedIn.push_back(param);
  return PF_Err_NONE;
}

A_char* StringCopy(A_char* dst, const A_char* src) {
  return std::strcpy(dst, src);
}

PF_Err CheckoutLayer(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long checkout_id,
                     const PF_RenderRequest* request, A_long /*what_time*/, A_long /*time_step*/,
                     A_u_long /*time_scale*/, PF_CheckoutResult* result) {
  FakeHost& host = FakeHost::From(effect_ref);
  host.layerCheckouts.push_back({index, checkout_id, *request});
  if (const auto failure = host.layerCheckoutErrors.find(index);
      failure != host.layerCheckoutErrors.end()) {
    return failure->second;
  }
  result->result_rect = host.checkoutResultRect;
  result->max_result_rect = host.checkoutMaxResultRect;
  return PF_Err_NONE;
}

PF_Err CheckoutLayerPixels(PF_ProgPtr effect_ref, A_long checkout_id, PF_EffectWorld** pixels) {
  FakeHost& host = FakeHost::From(effect_ref);
  if (const auto failure = host.pixelsErrors.find(checkout_id);
      failure != host.pixelsErrors.end()) {
    return failure->second;
  }
  const auto found = host.pixels.find(checkout_id);
  *pixels = found == host.pixels.end() ? nullptr : found->second;
  return PF_Err_NONE;
}

PF_Err CheckinLayerPixels(PF_ProgPtr effect_ref, A_long checkout_id) {
  FakeHost::From(effect_ref).pixelsCheckedIn.push_back(checkout_id);
  return PF_Err_NONE;
}

}  // namespace

FakeHost::FakeHost() {
  in_data.effect_ref = reinterpret_cast<PF_ProgPtr>(this);
  in_data.inter.add_param = AddParam;
  in_data.inter.register_ui = RegisterUI;
  in_data.inter.checkout_param = CheckoutParam;
  in_data.inter.checkin_param = CheckinParam;
  utils_.ansi.strcpy = StringCopy;
  in_data.utils = &utils_;
  preRenderCallbacks.checkout_layer = CheckoutLayer;
  smartRenderCallbacks.checkout_layer_pixels = CheckoutLayerPixels;
  smartRenderCallbacks.checkin_layer_pixels = CheckinLayerPixels;
  in_data.time_step = 1;
  in_data.time_scale = 24;
  in_data.appl_id = 0x46585443;  // 'FXTC', After Effects
  in_data.version.major = 13;
  in_data.version.minor = 27;
}

FakeHost& FakeHost::From(PF_ProgPtr effect_ref) {
  return *reinterpret_cast<FakeHost*>(effect_ref);
}

void FakeHost::BuildListFromAdded() {
  list.clear();
  PF_ParamDef input;
  std::memset(&input, 0, sizeof input);
  input.param_type = PF_Param_LAYER;
  list.push_back(input);
  list.insert(list.end(), added.begin(), added.end());
  in_data.num_params = static_cast<A_long>(list.size());
}

std::vector<PF_ParamDef*> FakeHost::ParamArray() {
  std::vector<PF_ParamDef*> array;
  for (PF_ParamDef& def : list)
    array.push_back(&def);
  return array;
}

}  // namespace morvane::testing
